// The data components on a store, and what they share. An operation is one transaction; its failures go
// out under the component's programmatic identity.
#pragma once

#include <initializer_list>
#include <memory>

#include "automation/apartment.h"
#include "interfaces/product_components.h"
#include "interfaces/store_history.h"
#include "interfaces/store_keeper.h"
#include "interfaces/store_records.h"
#include "stores/store.h"

namespace stores {

class Session;
struct Value;

// An identifier: 13 for what is no decimal integer, 6 for one beyond 16 bits, 94 for null.
int Key_Of(const automation::Variant& argument);

// A value of the dialog. Fails on what the store could take but no answer could ever deliver again:
// control characters and halves of surrogate pairs.
std::string Text_Of(const automation::Variant& argument);

// Keys first, texts behind them, as every statement of the components takes them.
std::vector<Value> Values_Of(std::initializer_list<const automation::Variant*> keys,
                             std::initializer_list<const automation::Variant*> texts = {});

// One line for a person, as the description.
[[noreturn]] void Fail(const Store_Error& error);

// The session of a component that is being created: on the store in use, or else on the user's own, which is
// opened and, when it is missing, made. Throws automation::Failure.
std::shared_ptr<Session> Current_Session();

// Every component belongs to the thread that created it. Failures go out under the first interface's
// identity.
template <typename Interface, typename... Others>
class Component : public automation::Object<Interface, Others...> {
protected:
    template <typename Body>
    automation::Status Serve(Body&& body) const {
        return automation::Guard(Interface::Program_Identity, [&] {
            apartment.Require();
            try {
                body();
            } catch (const Store_Error& error) {
                Fail(error);
            }
        });
    }

private:
    const automation::Apartment apartment;
};

using New_Object = automation::Reference<automation::Unknown>;

New_Object Make_SR();
New_Object Make_NODES();
New_Object Make_DETAIL();
New_Object Make_CONFIG();
New_Object Make_UDNODES();
New_Object Make_DELNODES();
New_Object Make_INSNODES();
New_Object Make_Message_Box();
New_Object Make_Label_Checker();
New_Object Make_Store_Keeper();
New_Object Make_Store_Records();

} // namespace stores
