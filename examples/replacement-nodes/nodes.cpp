// Serves the editor's nodes from a table instead of the product's database, in place of ZEBdb.NODES.
//
// Every partition of every configuration has the same three nodes. It only reads: what the editor saves goes
// to the product's other components.
#include <string>
#include <vector>

#include "automation/apartment.h"
#include "automation/server.h"
#include "interfaces/product_components.h"

namespace {

using automation::Status;
using automation::String;
using automation::String_View;
using automation::Variant;

using Values = std::vector<String_View>;

const Values Node_Fields{u"NodeNumber",      u"NodeDescription", u"SuperviseID",  u"Hookflash",
                         u"ThresholdTypeID", u"Transfer",        u"Disconnection"};
const Values Detail_Fields{u"Retrieve", u"BusyRetry", u"NumberRetries", u"RingLimit",
                           u"BusyOn",   u"BusyOff",   u"RingOn",        u"RingOff"};
const Values Enhanced_Fields{u"Retrieve", u"BusyRetry", u"NumberRetries", u"RingLimit",
                             u"Busy1On",  u"Busy2On",   u"RingOn",        u"RingOff"};

// Supervised types: 0 Blind, 1 Partial, 2 Full, 3 DialContinue, 4 Enhanced. Node 0 is the default node.
struct Node {
    Values Record; // by Node_Fields
    Values Detail; // by Detail_Fields or Enhanced_Fields; a Blind node has none

    String_View Number() const { return Record[0]; }
    String_View Supervised_Type() const { return Record[2]; }
};

const Node Nodes[] = {
    {{u"0", u"Example default", u"0", u"500", u"7", u"!", u"!"}, {}},
    {{u"100", u"Example desk", u"2", u"600", u"7", u"!,,9#", u"!,,*"},
     {u"!", u"4", u"3", u"5", u"500", u"500", u"2000", u"4000"}},
    {{u"200", u"Example <queue> & more", u"1", u"700", u"4", u"!,,7", u"!"},
     {u"!!", u"2", u"6", u"4", u"250", u"250", u"2000", u"4000"}},
};

String Escaped(String_View text) {
    String escaped;
    for (const char16_t unit : text)
        escaped += unit == u'&'    ? u"&amp;"
                   : unit == u'<'  ? u"&lt;"
                   : unit == u'\'' ? u"&apos;"
                                   : String(1, unit);
    return escaped;
}

// A persisted recordset: the fields in their order, then the rows.
class Recordset {
public:
    explicit Recordset(const Values& fields) : fields(fields) {
        for (const String_View field : fields) {
            // The node number is the one field that is a number.
            const String_View type = field == Node_Fields[0] ? u"i2" : u"string";
            schema.append(u"<s:AttributeType name='").append(field).append(u"'><s:datatype dt:type='");
            schema.append(type).append(u"'/></s:AttributeType>");
        }
    }
    void Add(const Values& values) {
        rows += u"<z:row";
        for (std::size_t at = 0; at < fields.size(); ++at)
            rows.append(u" ").append(fields[at]).append(u"='").append(Escaped(values.at(at))).append(u"'");
        rows += u"/>";
    }
    Variant XML() const {
        return u"<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'"
               u" xmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'"
               u" xmlns:rs='urn:schemas-microsoft-com:rowset' xmlns:z='#RowsetSchema'>"
               u"<s:Schema id='RowsetSchema'><s:ElementType name='row' content='eltOnly'>" +
               schema + u"</s:ElementType></s:Schema><rs:data>" + rows + u"</rs:data></xml>";
    }

private:
    const Values& fields;
    String schema, rows;
};

class Example_Nodes final : public automation::Object<interfaces::NODES> {
public:
    Status Get_Style_Nodes(const Variant&, const Variant&, Variant& Result) override {
        return Serve([&] {
            Recordset nodes(Node_Fields);
            for (const Node& node : Nodes)
                nodes.Add(node.Record);
            Result = nodes.XML();
        });
    }
    Status Get_Partial_Detail(const Variant&, const Variant&, const Variant& Number,
                              Variant& Result) override {
        return Get_Detail(u"1", Detail_Fields, Number, Result);
    }
    Status Get_Full_Detail(const Variant&, const Variant&, const Variant& Number, Variant& Result) override {
        return Get_Detail(u"2", Detail_Fields, Number, Result);
    }
    Status Get_DialContinue_Detail(const Variant&, const Variant&, const Variant& Number,
                                   Variant& Result) override {
        return Get_Detail(u"3", Detail_Fields, Number, Result);
    }
    Status Get_Enhanced_Detail(const Variant&, const Variant&, const Variant& Number,
                               Variant& Result) override {
        return Get_Detail(u"4", Enhanced_Fields, Number, Result);
    }

private:
    // No exception leaves the module, and a call from another thread than the object's own is refused.
    template <typename Body>
    Status Serve(Body&& body) const {
        return automation::Guard(Program_Identity, [&] {
            apartment.Require();
            body();
        });
    }
    // One row, or none when the node is of another type.
    Status Get_Detail(String_View type, const Values& fields, const Variant& number, Variant& result) const {
        return Serve([&] {
            const String wanted = number.To_Text();
            Recordset detail(fields);
            for (const Node& node : Nodes)
                if (node.Number() == wanted && node.Supervised_Type() == type)
                    detail.Add(node.Detail);
            result = detail.XML();
        });
    }

    automation::Apartment apartment;
};

// A class identity of the replacement's own, so that it stands beside the class that it replaces.
const automation::Server_Class Classes[] = {
    {interfaces::NODES::Program_Identity.data(),
     {0x6C1F0E52, 0x93B7, 0x4D28, {0xA4, 0x5E, 0x07, 0xD1, 0x3B, 0x8C, 0xF2, 0x69}},
     [] { return automation::Reference<automation::Unknown>(automation::Make_Object<Example_Nodes>()); }}};

} // namespace

AUTOMATION_SERVER(Classes)
