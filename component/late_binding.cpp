// The public interface by name.
#include "automation/dispatch.h"
#include "busyness_rules.h"

namespace component {

using automation::Variant_Type;
using style_node::_Busyness_Rules;

namespace {

using Member = automation::Dispatch_Member<_Busyness_Rules>;

template <Status (_Busyness_Rules::*Property)(automation::Text&)>
Status Read_Text(_Busyness_Rules& object, Variant*, Variant& result) {
    automation::Text text;
    const Status status = (object.*Property)(text);
    result = Variant(text.View());
    return status;
}

template <Status (_Busyness_Rules::*Property)(Boolean&)>
Status Read_Boolean(_Busyness_Rules& object, Variant*, Variant& result) {
    Boolean value = style_node::False;
    const Status status = (object.*Property)(value);
    result = Variant::Boolean(value != style_node::False);
    return status;
}

Status Read_Code(_Busyness_Rules& object, Variant*, Variant& result) {
    Long code = 0;
    const Status status = object.Get_ErrCode(code);
    result = Variant(code);
    return status;
}

Status Write_Blind(_Busyness_Rules& object, Variant* values, Variant&) {
    Boolean value = values[0].Record().As_Integer;
    const Status status = object.Put_SupervisedType_Blind(value);
    values[0] = Variant::Boolean(value != style_node::False);
    return status;
}

Status Show(_Busyness_Rules& object, Variant* values, Variant& result) {
    auto integer = [values](int at) { return values[at].Record().As_Integer; };
    Boolean shown = style_node::False;
    const Status status = object.Shown(integer(0), integer(1), integer(2), integer(3), integer(4), shown);
    result = Variant::Boolean(shown != style_node::False);
    return status;
}

// A read-only property may be read with the syntax of a call, as may every property.
constexpr std::uint16_t Get = AUTOMATION_PROPERTY_GET | AUTOMATION_METHOD;

const std::vector<Member>& Members() {
    static const std::vector<Member> members{
        {u"ErrLocation", 1, Get, {}, Read_Text<&_Busyness_Rules::Get_ErrLocation>},
        {u"ErrCode", 2, Get, {}, Read_Code},
        {u"ErrDescription", 3, Get, {}, Read_Text<&_Busyness_Rules::Get_ErrDescription>},
        {u"SupervisedType_Blind", 4, Get, {}, Read_Boolean<&_Busyness_Rules::Get_SupervisedType_Blind>},
        {u"SupervisedType_Blind",
         4,
         AUTOMATION_PROPERTY_PUT,
         {{.Name = u"Given_Is_SupervisedType_Blind", .Type = Variant_Type::Boolean, .By_Reference = true}},
         Write_Blind},
        {u"Editing_Default_Node", 5, Get, {}, Read_Boolean<&_Busyness_Rules::Get_Editing_Default_Node>},
        {u"Shown",
         6,
         AUTOMATION_METHOD,
         {{.Name = u"Config_ID", .Type = Variant_Type::Integer},
          {.Name = u"Partition_ID", .Type = Variant_Type::Integer},
          {.Name = u"Node_Number", .Type = Variant_Type::Integer},
          {.Name = u"Language_ID", .Type = Variant_Type::Integer, .Optional = true, .Default = 1},
          {.Name = u"Silent_Error", .Type = Variant_Type::Boolean, .Optional = true, .Default = 0}},
         Show},
    };
    return members;
}

} // namespace

Status Busyness_Rules::Get_Member_Identities(const Automation_Name* names, std::uint32_t count,
                                             std::int32_t* identities) {
    return automation::Find_Members(dialog::Component_Name, Members(), names, count, identities);
}

Status Busyness_Rules::Invoke(std::int32_t member, std::uint16_t kind, const Automation_Arguments* arguments,
                              Automation_Variant* result, std::uint32_t* wrong_argument) {
    _Busyness_Rules& object = *this;
    return automation::Invoke_Member(dialog::Component_Name, Members(), object, member, kind, arguments,
                                     result, wrong_argument);
}

} // namespace component
