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

struct Value;

// An identifier: 13 for what is no decimal integer, 6 for one beyond 16 bits, 94 for null.
int Key_Of(const automation::Variant& argument);

// A value of the dialog. Fails on what the store could take but no answer could ever deliver again:
// control characters and halves of surrogate pairs.
std::string Text_Of(const automation::Variant& argument);

// Keys first, texts behind them, as every statement of the components takes them.
std::vector<Value> Values_Of(std::initializer_list<const automation::Variant*> keys,
                             std::initializer_list<const automation::Variant*> texts = {});

using Shared_Store = std::shared_ptr<Store>;

// The store that components are created on: the one in use, or else the user's own, which is opened and, when
// it is missing, made. Throws automation::Failure.
Shared_Store Current_Store();

// The store and the visit of a component that is being created.
struct Workplace {
    const Shared_Store Store = Current_Store();
    const std::shared_ptr<Visit> Editor = Store->Visit_Here();
};

// Every component belongs to the thread that created it. Failures go out under the first interface's
// identity.
template <typename Interface, typename... Others>
class Component : public automation::Object<Interface, Others...> {
protected:
    template <typename Body>
    automation::Status Serve(Body&& body) const {
        return automation::Guard(Interface::Program_Identity, [&] {
            apartment.Require();
            body();
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
