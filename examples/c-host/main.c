/* Shows the node editor for one node:
 *
 *     c-host CONFIG PARTITION NODE
 *
 * Ends with 0 when no error was recorded, 1 when one was, 2 for a wrong command line, 3 when there is no
 * editor. */
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include "style_node/busyness_rules.h"

enum { DONE = 0, ERROR_RECORDED = 1, WRONG_USAGE = 2, NO_EDITOR = 3 };

#define ENGLISH 1

/* Frees the text. */
static void Print(const char* name, Automation_Block* text) {
    const uint32_t size = Automation_To_UTF8(text, NULL, 0) + 1;
    char* const utf8 = malloc(size);
    if (utf8) {
        Automation_To_UTF8(text, utf8, size);
        fprintf(stderr, "%s: %s\n", name, utf8);
    }
    free(utf8);
    Automation_Free(text);
}

/* The reason is for a person; the description always says something. */
static void Print_Error(const char* what, Automation_Status status) {
    Automation_Error error;
    if (!Automation_Take_Error(&error)) {
        fprintf(stderr, "%s: status 0x%08X\n", what, (unsigned)status);
        return;
    }
    fprintf(stderr, "%s: error %d\n", what, (int)error.Number);
    Print("  description", error.Description);
    if (error.Reason)
        Print("  reason", error.Reason);
    Automation_Free(error.Source);
}

static _Busyness_Rules* Create_Editor(void) {
    static const char16_t name[] = STYLE_NODE_PROGRAM_IDENTITY;
    void* editor = NULL;
    const Automation_Status status =
        Automation_Create(name, sizeof name / sizeof *name - 1, &_Busyness_Rules_Identity, &editor);
    if (status < 0)
        Print_Error("The editor cannot be created", status);
    return editor;
}

static void Print_Error_Properties(_Busyness_Rules* editor) {
    Automation_Block* location = NULL;
    Automation_Block* description = NULL;
    int32_t code = 0;
    editor->Members->Get_ErrLocation(editor, &location);
    editor->Members->Get_ErrCode(editor, &code);
    editor->Members->Get_ErrDescription(editor, &description);
    Print("ErrLocation", location);
    fprintf(stderr, "ErrCode: %d\n", (int)code);
    Print("ErrDescription", description);
    Automation_Error error;
    if (Automation_Take_Error(&error)) { /* why there are no components of the product's */
        Automation_Free(error.Source);
        Automation_Free(error.Description);
        if (error.Reason)
            Print("Reason", error.Reason);
    }
}

/* Blocks while the dialog is up. */
static int Show(_Busyness_Rules* editor, const int16_t node[3]) {
    Automation_Boolean shown = AUTOMATION_FALSE;
    const Automation_Status status =
        editor->Members->Shown(editor, node[0], node[1], node[2], ENGLISH, AUTOMATION_FALSE, &shown);
    if (status < 0)
        Print_Error("The editor was not shown", status);
    else if (!shown)
        Print_Error_Properties(editor);
    return status >= 0 && shown ? DONE : ERROR_RECORDED;
}

static int Parse(const char* text, int16_t* number) {
    char* end = NULL;
    errno = 0;
    const long value = strtol(text, &end, 10);
    *number = (int16_t)value;
    return end != text && *end == '\0' && errno == 0 && *number == value;
}

int main(int count, char** words) {
    int16_t node[3];
    if (count != 4 || !Parse(words[1], &node[0]) || !Parse(words[2], &node[1]) ||
        !Parse(words[3], &node[2])) {
        fprintf(stderr, "usage: c-host CONFIG PARTITION NODE\n");
        return WRONG_USAGE;
    }
    _Busyness_Rules* const editor = Create_Editor();
    if (!editor)
        return NO_EDITOR;
    const int result = Show(editor, node);
    editor->Members->Release(editor);
    return result;
}
