// The data components on a store, and what they share. An operation is one transaction; its failures go
// out under the component's programmatic identity.
#pragma once

#include <initializer_list>
#include <memory>

#include "automation/class_table.h"
#include "interfaces/product_components.h"
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
using New_Object = automation::Reference<automation::Unknown>;

New_Object Make_SR(const Shared_Store& store);
New_Object Make_NODES(const Shared_Store& store);
New_Object Make_DETAIL();
New_Object Make_CONFIG(const Shared_Store& store);
New_Object Make_UDNODES(const Shared_Store& store);
New_Object Make_DELNODES(const Shared_Store& store);
New_Object Make_INSNODES(const Shared_Store& store);
New_Object Make_Message_Box();
New_Object Make_Label_Checker();

} // namespace stores
