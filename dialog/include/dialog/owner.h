// What the dialog needs of the object that opened it, and how a procedure reports its failures.
//
// Everything here runs on the thread that shows the dialog.
#pragma once

#include "automation/unknown.h"
#include "toolkit/control.h"

namespace dialog {

using automation::Integer;
using automation::Long;
using automation::String;
using automation::String_View;

// Source of the failures of the component's own run time.
constexpr String_View Component_Name = u"KOR_STYLE_Node";

// The product's identifier of the node type that the editor edits.
constexpr Integer Style_Node_Type = 5;

// The object that a failure's location names.
enum class Object_Index : Integer { Busyness_Rules = 1, dlgGUI = 2 };

// Records failures; the record holds the last one.
class Error_Sink {
public:
    virtual void Handle_Error(String_View Source, String_View Procedure, Long Number, String_View Description,
                              Object_Index Object) = 0;

protected:
    ~Error_Sink() = default;
};

// Takes the source (as the platform's error object names it), the number and the description of a failure;
// the texts last as long as the call.
using Take_Failure = void(void* taker, String_View source, Long number, String_View description);

// Input_Driver the failure in flight to `take`, without a copy: there may be no memory for one. From a catch
// clause only; what `take` throws is lost.
void Hand_Over_Failure(Take_Failure* take, void* taker) noexcept;
template <typename Taker>
void Hand_Over_Failure(Taker taker) noexcept {
    Hand_Over_Failure(
        [](void* to, String_View source, Long number, String_View description) {
            (*static_cast<Taker*>(to))(source, number, description);
        },
        &taker);
}

// Input_Driver the failure in flight to the sink. From a catch clause only.
void Report(Error_Sink& sink, String_View procedure, Object_Index object) noexcept;

// The trap of a procedure: runs `body`; a failure is reported under the procedure's literal name and the
// procedure answers `after_failure`. A form that has gone is no failure: it ends every procedure on the
// stack.
template <typename Body, typename Result>
Result Trapped(Error_Sink& sink, String_View procedure, Object_Index object, Result after_failure,
               Body&& body) {
    try {
        return body();
    } catch (const toolkit::Form_Gone&) {
        throw;
    } catch (...) {
        Report(sink, procedure, object);
        return after_failure;
    }
}

template <typename Body>
void Trapped(Error_Sink& sink, String_View procedure, Object_Index object, Body&& body) {
    Trapped(sink, procedure, object, 0, [&] {
        body();
        return 0;
    });
}

// The text with its first "~" replaced; run-time failure 5 when there is none.
String With_Placeholder(String_View text, String_View value);

// The object that opened the dialog. No identity of its own: hosts never see it.
class Owner : public automation::Unknown, public Error_Sink {
public:
    virtual String ErrDescription() const = 0;
    virtual bool SupervisedType_Blind() const = 0;
    virtual void Set_SupervisedType_Blind(bool value) = 0;

    virtual void Load_All_Threshold() = 0;
    virtual String Node_Type_Name_of(Integer node_type) = 0;
    virtual String Language_Text(Long Text_ID) = 0;

    // Shows the node at a 0-based index of the node list.
    virtual void Edit_Nth_Node(Integer index) = 0;
    // True when the shown node may be left.
    virtual bool Changes_Verified() = 0;
    // False only when the label was refused; after an error it is True and ErrDescription is not empty.
    virtual bool Save_Changes() = 0;

protected:
    ~Owner() = default;
};

} // namespace dialog
