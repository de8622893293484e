// A Display that prints every message box with its answer and leaves everything to another Display.
//
// `inner` and the transcript belong to the caller and outlive the reporter. Thread rule: that of `inner`.
#pragma once

#include "toolkit/display.h"
#include "transcript/transcript.h"

namespace host {

class Box_Reporter : public toolkit::Display {
public:
    Box_Reporter(Display& inner, Transcript& transcript) : inner(inner), transcript(transcript) {}

    toolkit::Size Screen_Size() const override { return inner.Screen_Size(); }
    toolkit::Size Text_Size(const toolkit::Font& font, String_View text) const override {
        return inner.Text_Size(font, text);
    }
    void Form_Loaded(toolkit::Form& form) override { inner.Form_Loaded(form); }
    void Form_Unloaded(toolkit::Form& form) override { inner.Form_Unloaded(form); }
    void Form_Changed(toolkit::Form& form, toolkit::Property property) override {
        inner.Form_Changed(form, property);
    }
    void Control_Changed(toolkit::Control& control, toolkit::Property property) override {
        inner.Control_Changed(control, property);
    }
    void Focus_Changed(toolkit::Form& form) override { inner.Focus_Changed(form); }
    void Pointer_Changed() override { inner.Pointer_Changed(); }
    void Run_Modal(toolkit::Form& form) override { inner.Run_Modal(form); }
    void Process_Pending_Messages() override { inner.Process_Pending_Messages(); }
    Long Show_Message(const toolkit::Message& message) override {
        const Long answer = inner.Show_Message(message);
        transcript.Box(message, answer);
        return answer;
    }

private:
    Display& inner;
    Transcript& transcript;
};

} // namespace host
