// How a window gets at its form, whose thread need not be the widgets' own.
#pragma once

#include <exception>
#include <functional>

namespace window {

// Everything here is called on the widgets' thread.
class Runner {
public:
    virtual ~Runner() = default;

    // Runs `verb` on the form's thread, then `done` on this one with what the verb threw (null: nothing).
    // Comes back before that only while the verb itself waits for a person.
    virtual void Run(std::function<void()> verb, std::function<void(std::exception_ptr)> done) = 0;
    // False while the form's thread is at work: nothing of its forms may be read then.
    virtual bool May_Read() const = 0;
};

// For forms of the widgets' thread.
class Direct_Runner final : public Runner {
public:
    void Run(std::function<void()> verb, std::function<void(std::exception_ptr)> done) override {
        std::exception_ptr thrown;
        try {
            verb();
        } catch (...) {
            thrown = std::current_exception();
        }
        done(thrown);
    }
    bool May_Read() const override { return true; }
};

} // namespace window
