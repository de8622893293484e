#include "toolkit/edit_answer.h"

#include "toolkit/display_texts.h"

namespace toolkit {

String Answer_To_Edit(const Text_Control& field, String_View before, String_View wanted) {
    namespace texts = display_text;
    const String& text = field.Text();
    if (text == wanted)
        return {};
    const String done = text == before ? String(texts::Not_Accepted) : String(texts::Became) + u" " + text;
    return done + u": " + (field.Rule().empty() ? String(texts::Keeps_Its_Text) : field.Rule());
}

} // namespace toolkit
