#include "recordset/recordset.h"

#include <mutex>

#include "automation/text.h"
#include "classes/class_table.h"

#include <cmath>

#include "failures.h"
#include "stream.h"
#include "xml_reader.h"

namespace recordset {

namespace {

[[noreturn]] void Fail(Long number) {
    recordset::Fail(Recordset_Program_Identity, number);
}

String_View Text_From(const automation::Reference<Stream>& source) {
    if (!source)
        Fail(number::Invalid_Source);
    try {
        return source->Rest();
    } catch (const automation::Failure& failure) {
        if (failure.Number == number::Object_Closed)
            Fail(number::Invalid_Source);
        throw;
    }
}

class Persisted_Recordset final : public automation::Object<Recordset> {
public:
    void Open(const automation::Reference<Stream>& source, Cursor_Type, Lock_Type) override {
        if (store)
            Fail(number::Object_Open);
        auto read = Read_Persisted(Text_From(source));
        if (!read)
            Fail(number::Unreadable);
        store = std::move(read);
        current = 0;
    }

    void Close() override {
        Rows();
        store.reset();
    }

    bool Is_Open() const override { return store.has_value(); }

    Long Record_Count() const override { return static_cast<Long>(Rows().Row_Count()); }
    bool At_Beginning() const override { return Rows().Row_Count() == 0 || current < 0; }
    bool At_End() const override { return current >= Record_Count(); }

    void Move_First() override {
        if (Record_Count() == 0)
            Fail(number::No_Current_Record);
        current = 0;
    }
    void Move_Next() override {
        if (At_End())
            Fail(number::No_Current_Record);
        ++current;
    }
    void Move_Previous() override {
        if (At_Beginning())
            Fail(number::No_Current_Record);
        --current;
    }

    // The record's number from 1, as a double-precision value like every bookmark of the platform.
    Variant Bookmark() const override { return static_cast<double>(Current_Row() + 1); }

    void Set_Bookmark(const Variant& bookmark) override {
        const Long count = Record_Count();
        const bool is_ours = bookmark.Type() == automation::Variant_Type::Double;
        const double position = is_ours ? bookmark.To_Double() : 0;
        if (!(position >= 1 && position <= count) || position != std::floor(position))
            Fail(number::Wrong_Arguments);
        current = static_cast<Long>(position) - 1;
    }

    Long Field_Count() const override { return static_cast<Long>(Rows().Fields().size()); }
    String Field_Name(Long ordinal) const override { return Rows().Fields()[Field_At(ordinal)].Name; }
    Variant Value(String_View field) const override { return Current_Value(Field_Named(field)); }
    Variant Value(Long ordinal) const override { return Current_Value(Field_At(ordinal)); }

private:
    const Row_Store& Rows() const {
        if (!store)
            Fail(number::Object_Closed);
        return *store;
    }

    std::size_t Current_Row() const {
        if (At_Beginning() || At_End())
            Fail(number::No_Current_Record);
        return static_cast<std::size_t>(current);
    }

    std::size_t Field_At(Long ordinal) const {
        if (ordinal < 0 || ordinal >= Field_Count())
            Fail(number::No_Such_Item);
        return static_cast<std::size_t>(ordinal);
    }

    std::size_t Field_Named(String_View name) const {
        const auto& fields = Rows().Fields();
        for (std::size_t index = 0; index < fields.size(); ++index)
            if (fields[index].Name == name || automation::Equal_Ignoring_Case(fields[index].Name, name))
                return index;
        Fail(number::No_Such_Item);
    }

    Variant Current_Value(std::size_t field) const { return Rows().Value(Current_Row(), field); }

    std::optional<Row_Store> store; // none while closed
    Long current = 0;               // -1 at the beginning of file, the count at the end
};

} // namespace

void Offer_Classes() {
    static std::once_flag once;
    std::call_once(once, [] {
        classes::Offer_Class({String(Stream_Program_Identity),
                              {0x3C9E51D0, 0x7A24, 0x4F16, {0x9B, 0x62, 0x18, 0xE5, 0x4D, 0x70, 0xC3, 0x8F}},
                              [] { return automation::Reference<automation::Unknown>(Make_Stream()); }});
        classes::Offer_Class({String(Recordset_Program_Identity),
                              {0xA4170F5B, 0x2D8C, 0x4BE3, {0x86, 0xF9, 0x31, 0x5A, 0xC7, 0x0E, 0xD4, 0x62}},
                              [] {
                                  return automation::Reference<automation::Unknown>(
                                      automation::Make_Object<Persisted_Recordset>());
                              }});
    });
}

} // namespace recordset
