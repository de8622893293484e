#include "host/component_proxies.h"

#include <algorithm>

#include "automation/class_table.h"
#include "interfaces/product_components.h"

namespace host {

namespace {

using automation::Class_Description;
using automation::Reference;
using automation::Status;
using automation::Unknown;
using automation::Variant;
using Text = const Variant&;

template <typename Interface>
class Proxy : public automation::Object<Interface> {
public:
    Proxy(Reference<Interface> inner, std::shared_ptr<Call_Plan> plan)
        : inner(std::move(inner)), plan(std::move(plan)) {}

protected:
    template <typename Operation, typename... Texts>
    Status Read(String_View name, Operation operation, Variant& result, const Texts&... arguments) {
        return plan->Call(name, {&arguments...}, &result,
                          [&] { return (inner.Get()->*operation)(arguments..., result); });
    }
    template <typename Operation, typename... Texts>
    Status Write(String_View name, Operation operation, const Texts&... arguments) {
        return plan->Call(name, {&arguments...}, nullptr,
                          [&] { return (inner.Get()->*operation)(arguments...); });
    }

    const Reference<Interface> inner;
    const std::shared_ptr<Call_Plan> plan;
};

class SR_Proxy final : public Proxy<interfaces::SR> {
public:
    using Proxy::Proxy;
    Status Get_All_Node_Types(Variant& Result) override {
        return Read(u"Get_All_Node_Types", &SR::Get_All_Node_Types, Result);
    }
    Status Get_All_Threshold_Types(Variant& Result) override {
        return Read(u"Get_All_Threshold_Types", &SR::Get_All_Threshold_Types, Result);
    }
};

class NODES_Proxy final : public Proxy<interfaces::NODES> {
public:
    using Proxy::Proxy;
    Status Get_Full_Detail(Text Config, Text Partition, Text Node, Variant& Result) override {
        return Read(u"Get_Full_Detail", &NODES::Get_Full_Detail, Result, Config, Partition, Node);
    }
    Status Get_Partial_Detail(Text Config, Text Partition, Text Node, Variant& Result) override {
        return Read(u"Get_Partial_Detail", &NODES::Get_Partial_Detail, Result, Config, Partition, Node);
    }
    Status Get_Enhanced_Detail(Text Config, Text Partition, Text Node, Variant& Result) override {
        return Read(u"Get_Enhanced_Detail", &NODES::Get_Enhanced_Detail, Result, Config, Partition, Node);
    }
    Status Get_DialContinue_Detail(Text Config, Text Partition, Text Node, Variant& Result) override {
        return Read(u"Get_DialContinue_Detail", &NODES::Get_DialContinue_Detail, Result, Config, Partition,
                    Node);
    }
    Status Get_Style_Nodes(Text Config, Text Partition, Variant& Result) override {
        return Read(u"Get_Style_Nodes", &NODES::Get_Style_Nodes, Result, Config, Partition);
    }
};

class CONFIG_Proxy final : public Proxy<interfaces::CONFIG> {
public:
    using Proxy::Proxy;
    Status Get_Configuration_Info(Variant& Result) override {
        return Read(u"Get_Configuration_Info", &CONFIG::Get_Configuration_Info, Result);
    }
};

class UDNODES_Proxy final : public Proxy<interfaces::UDNODES> {
public:
    using Proxy::Proxy;
    Status Update_Style_Node(Text Config, Text Partition, Text Node, Text Hookflash, Text Threshold,
                             Text Transfer, Text Disconnection, Text Supervise_Caption, Text Supervise,
                             Text Label) override {
        return Write(u"Update_Style_Node", &UDNODES::Update_Style_Node, Config, Partition, Node, Hookflash,
                     Threshold, Transfer, Disconnection, Supervise_Caption, Supervise, Label);
    }
    Status Update_Node_Entry(Text Label, Text Changed, Text Config, Text Partition, Text Node_Type,
                             Text Node) override {
        return Write(u"Update_Node_Entry", &UDNODES::Update_Node_Entry, Label, Changed, Config, Partition,
                     Node_Type, Node);
    }
};

class DELNODES_Proxy final : public Proxy<interfaces::DELNODES> {
public:
    using Proxy::Proxy;
    Status Delete_Full_Detail(Text Config, Text Partition, Text Node) override {
        return Write(u"Delete_Full_Detail", &DELNODES::Delete_Full_Detail, Config, Partition, Node);
    }
    Status Delete_Partial_Detail(Text Config, Text Partition, Text Node) override {
        return Write(u"Delete_Partial_Detail", &DELNODES::Delete_Partial_Detail, Config, Partition, Node);
    }
    Status Delete_Enhanced_Detail(Text Config, Text Partition, Text Node) override {
        return Write(u"Delete_Enhanced_Detail", &DELNODES::Delete_Enhanced_Detail, Config, Partition, Node);
    }
    Status Delete_DialContinue_Detail(Text Config, Text Partition, Text Node) override {
        return Write(u"Delete_DialContinue_Detail", &DELNODES::Delete_DialContinue_Detail, Config, Partition,
                     Node);
    }
};

class INSNODES_Proxy final : public Proxy<interfaces::INSNODES> {
public:
    using Proxy::Proxy;
    Status Insert_DialContinue_Detail(Text Config, Text Partition, Text Node, Text Supervise, Text Retrieve,
                                      Text Busy_Retry, Text Retries, Text Ring_Limit, Text Busy_On,
                                      Text Busy_Off, Text Ring_On, Text Ring_Off) override {
        return Write(u"Insert_DialContinue_Detail", &INSNODES::Insert_DialContinue_Detail, Config, Partition,
                     Node, Supervise, Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On,
                     Ring_Off);
    }
    Status Insert_Enhanced_Detail(Text Config, Text Partition, Text Node, Text Supervise, Text Retrieve,
                                  Text Busy_Retry, Text Retries, Text Ring_Limit, Text Busy_On, Text Busy_Off,
                                  Text Ring_On, Text Ring_Off) override {
        return Write(u"Insert_Enhanced_Detail", &INSNODES::Insert_Enhanced_Detail, Config, Partition, Node,
                     Supervise, Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On,
                     Ring_Off);
    }
    Status Insert_Full_Detail(Text Config, Text Partition, Text Node, Text Supervise, Text Retrieve,
                              Text Busy_Retry, Text Retries, Text Ring_Limit, Text Busy_On, Text Busy_Off,
                              Text Ring_On, Text Ring_Off) override {
        return Write(u"Insert_Full_Detail", &INSNODES::Insert_Full_Detail, Config, Partition, Node, Supervise,
                     Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On, Ring_Off);
    }
    Status Insert_Partial_Detail(Text Config, Text Partition, Text Node, Text Supervise, Text Retrieve,
                                 Text Busy_Retry, Text Retries, Text Ring_Limit, Text Busy_On, Text Busy_Off,
                                 Text Ring_On, Text Ring_Off) override {
        return Write(u"Insert_Partial_Detail", &INSNODES::Insert_Partial_Detail, Config, Partition, Node,
                     Supervise, Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On,
                     Ring_Off);
    }
};

class Message_Box_Proxy final : public Proxy<interfaces::Message_Box> {
public:
    using Proxy::Proxy;
    Status Box_Error_Location(Variant& Result) override { return inner->Box_Error_Location(Result); }
    Status Box_Error_Code(Long& Result) override { return inner->Box_Error_Code(Result); }
    Status Box_Error_Description(Variant& Result) override { return inner->Box_Error_Description(Result); }
    Status Show_Box(Text Language, Text Shown, Text Kind, Text Buttons, Text Title, Long& Answer) override {
        return plan->Call(u"Show_Box", {&Language, &Shown, &Kind, &Buttons, &Title}, nullptr,
                          [&] { return inner->Show_Box(Language, Shown, Kind, Buttons, Title, Answer); });
    }
};

class Label_Checker_Proxy final : public Proxy<interfaces::Label_Checker> {
public:
    using Proxy::Proxy;
    Status Is_Label_Allowed(Text Label, bool& Allowed) override {
        return plan->Call(u"Is_Label_Allowed", {&Label}, nullptr,
                          [&] { return inner->Is_Label_Allowed(Label, Allowed); });
    }
    Status Prepare_Label(Text Label, Variant& Result) override {
        return Read(u"Prepare_Label", &Label_Checker::Prepare_Label, Result, Label);
    }
};

using Wrapper = Reference<Unknown> (*)(const Reference<Unknown>& inner, const std::shared_ptr<Call_Plan>&);

template <typename Interface, typename Class>
Reference<Unknown> Wrapped(const Reference<Unknown>& inner, const std::shared_ptr<Call_Plan>& plan) {
    return automation::Make_Object<Class>(automation::Bind<Interface>(inner), plan);
}

struct Product_Class {
    String_View Program_Identity;
    Wrapper Wrap; // null: it has no operations
};

template <typename Class, typename Interface>
constexpr Product_Class Of() {
    return {Interface::Program_Identity, &Wrapped<Interface, Class>};
}

constexpr Product_Class Product_Classes[] = {
    Of<SR_Proxy, interfaces::SR>(),
    Of<NODES_Proxy, interfaces::NODES>(),
    {interfaces::DETAIL::Program_Identity, nullptr},
    Of<CONFIG_Proxy, interfaces::CONFIG>(),
    Of<UDNODES_Proxy, interfaces::UDNODES>(),
    Of<DELNODES_Proxy, interfaces::DELNODES>(),
    Of<INSNODES_Proxy, interfaces::INSNODES>(),
    Of<Message_Box_Proxy, interfaces::Message_Box>(),
    Of<Label_Checker_Proxy, interfaces::Label_Checker>(),
};

const Product_Class* Find_Product_Class(String_View program_identity) {
    const auto* found =
        std::find_if(std::begin(Product_Classes), std::end(Product_Classes), [&](const auto& known) {
            return automation::Equal_Ignoring_Case(known.Program_Identity, program_identity);
        });
    return found == std::end(Product_Classes) ? nullptr : found;
}

std::optional<Class_Description> Find_Registered(String_View program_identity) {
    for (auto& description : automation::Registered_Classes())
        if (automation::Equal_Ignoring_Case(description.Program_Identity, program_identity))
            return description;
    return {};
}

} // namespace

void Install_Proxies(const std::shared_ptr<Call_Plan>& plan) {
    for (auto& description : automation::Registered_Classes()) {
        const Product_Class* product = Find_Product_Class(description.Program_Identity);
        if (!product || !product->Wrap)
            continue;
        description.Create = [create = description.Create, wrap = product->Wrap, plan] {
            const auto inner = create();
            return inner ? wrap(inner, plan) : nullptr;
        };
        automation::Register_Class(description);
    }
}

void Require_Known_Class(const std::string& program_identity) {
    const auto name = automation::From_UTF8(program_identity);
    if (!name || (!Find_Product_Class(*name) && !Find_Registered(*name)))
        throw Usage_Error("--missing " + program_identity + ": there is no such component");
}

void Make_Missing(const std::string& program_identity) {
    auto description = Find_Registered(automation::From_UTF8(program_identity).value_or(String()));
    if (!description)
        return;
    description->Create = [] { return nullptr; };
    automation::Register_Class(std::move(*description));
}

} // namespace host
