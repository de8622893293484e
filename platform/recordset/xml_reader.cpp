#include "xml_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "canonical_reader.h"
#include "reader_memory.h"
#include "row_builder.h"
#include "utf8_chunks.h"

namespace recordset {

namespace {

using automation::String_View;

// Elements that mean something, each inside one other.
enum class Place {
    Document,
    Root,
    Schema,
    Row_Type,
    Field,
    Field_Type,
    Data,
    Row,
    Insert,
    Inserted_Row,
    Update,
    Original,
    Original_Row,
    Changed_Row,
};

struct Step {
    Place Outer;
    std::string_view Namespace;
    std::string_view Element;
    Place Inner;
};

// Rows first: there are many of them. Rows inside a delete are gone, and so is the element.
constexpr std::array Steps{
    Step{Place::Data, format::Row_Namespace, "row", Place::Row},
    Step{Place::Data, format::Rowset_Namespace, "insert", Place::Insert},
    Step{Place::Data, format::Rowset_Namespace, "update", Place::Update},
    Step{Place::Insert, format::Row_Namespace, "row", Place::Inserted_Row},
    Step{Place::Update, format::Row_Namespace, "row", Place::Changed_Row},
    Step{Place::Update, format::Rowset_Namespace, "original", Place::Original},
    Step{Place::Original, format::Row_Namespace, "row", Place::Original_Row},
    Step{Place::Root, format::Schema_Namespace, "Schema", Place::Schema},
    Step{Place::Root, format::Rowset_Namespace, "data", Place::Data},
    Step{Place::Schema, format::Schema_Namespace, "ElementType", Place::Row_Type},
    Step{Place::Row_Type, format::Schema_Namespace, "AttributeType", Place::Field},
    Step{Place::Field, format::Schema_Namespace, "datatype", Place::Field_Type},
};

Place Outer_Of(Place place) {
    const auto* step = std::find_if(Steps.begin(), Steps.end(),
                                    [place](const Step& candidate) { return candidate.Inner == place; });
    return step == Steps.end() ? Place::Document : step->Outer;
}

constexpr std::size_t longest_piece = std::size_t{1} << 26U; // units: below what the parser counts in an int

struct Free_Parser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

class Reader {
public:
    explicit Reader(String_View text);
    std::optional<Row_Store> Read();

private:
    static void XMLCALL On_Start(void* reader, const XML_Char* name, const XML_Char** attributes);
    static void XMLCALL On_End(void* reader, const XML_Char* name);
    static void XMLCALL On_Namespace(void* reader, const XML_Char* prefix, const XML_Char* name_space);
    static void XMLCALL On_Document_Type(void* reader, const XML_Char* name, const XML_Char* system_identity,
                                         const XML_Char* public_identity, int has_internal_subset);

    template <typename Body>
    static void Handle(void* reader, Body&& body) noexcept;
    bool Enter(const char* name, Attributes attributes);
    bool Begin(Attributes attributes);
    bool Leave();
    bool Feed();

    Reader_Memory memory;
    UTF8_Chunks chunks;
    std::unique_ptr<XML_ParserStruct, Free_Parser> parser;
    Row_Builder builder;
    Place place = Place::Document;
    std::size_t passed_over = 0; // depth inside an element that means nothing
    bool stopped = false;
    std::exception_ptr failure; // thrown in a handler; it must not cross the parser
};

// The encoding is settled here: what an XML declaration says of it counts no more.
Reader::Reader(String_View text) : memory(text.size()), chunks(text) {
    const char separator[] = {Name_Separator, '\0'};
    parser.reset(XML_ParserCreate_MM("UTF-8", memory.Suite(), separator));
    if (!parser)
        throw std::bad_alloc();
    XML_SetUserData(parser.get(), this);
    XML_SetElementHandler(parser.get(), On_Start, On_End);
    XML_SetStartNamespaceDeclHandler(parser.get(), On_Namespace);
    XML_SetStartDoctypeDeclHandler(parser.get(), On_Document_Type);
}

// The body says whether the text is still readable.
template <typename Body>
void Reader::Handle(void* reader, Body&& body) noexcept {
    auto& self = *static_cast<Reader*>(reader);
    if (self.stopped)
        return;
    try {
        self.stopped = !body(self);
    } catch (...) {
        self.stopped = true;
        self.failure = std::current_exception();
    }
    if (self.stopped)
        XML_StopParser(self.parser.get(), XML_FALSE);
}

void Reader::On_Start(void* reader, const XML_Char* name, const XML_Char** attributes) {
    Handle(reader, [&](Reader& self) { return self.Enter(name, attributes); });
}

void Reader::On_End(void* reader, const XML_Char*) {
    Handle(reader, [](Reader& self) { return self.Leave(); });
}

// The parser writes the namespace out at every prefix: a long one would cost the square of the text.
void Reader::On_Namespace(void* reader, const XML_Char*, const XML_Char* name_space) {
    constexpr std::size_t longest = 1024;
    Handle(reader,
           [&](Reader&) { return name_space == nullptr || strnlen(name_space, longest + 1) <= longest; });
}

void Reader::On_Document_Type(void* reader, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    Handle(reader, [](Reader&) { return false; });
}

bool Reader::Enter(const char* name, Attributes attributes) {
    if (passed_over > 0) {
        ++passed_over;
        return true;
    }
    if (place == Place::Document) {
        place = Place::Root;
        return Local_Name(name) == "xml";
    }
    const auto* step = std::find_if(Steps.begin(), Steps.end(), [&](const Step& candidate) {
        return candidate.Outer == place && Is_Name(name, candidate.Namespace, candidate.Element);
    });
    if (step == Steps.end()) {
        passed_over = 1;
        return true;
    }
    place = step->Inner;
    return Begin(attributes);
}

bool Reader::Begin(Attributes attributes) {
    switch (place) {
    case Place::Row_Type:
        return builder.Begin_Row_Type();
    case Place::Field:
        return builder.Begin_Field(attributes);
    case Place::Field_Type:
        builder.Set_Field_Type(attributes);
        return true;
    case Place::Row:
    case Place::Inserted_Row:
        return builder.Add_Row(attributes);
    case Place::Original_Row:
        return builder.Add_Original(attributes);
    case Place::Changed_Row:
        return builder.Add_Changed(attributes);
    default:
        return true;
    }
}

bool Reader::Leave() {
    if (passed_over > 0) {
        --passed_over;
        return true;
    }
    const Place left = std::exchange(place, Outer_Of(place));
    if (left == Place::Field)
        builder.End_Field();
    if (left == Place::Row_Type)
        return builder.End_Row_Type();
    return left != Place::Update || builder.End_Update();
}

// The parser scans a token that is not at its end from its beginning again with every piece. So the pieces
// grow while it stays at one token, which then costs no more than a few times its length.
bool Reader::Feed() {
    constexpr std::size_t usual = std::size_t{1} << 14U; // units
    std::size_t most_units = usual;
    XML_Index token = 0;
    bool last = false;
    while (!last) {
        const std::size_t units = std::clamp<std::size_t>(chunks.Left(), 2, most_units);
        const auto room = static_cast<int>(units * UTF8_Chunks::Most_Bytes_A_Unit);
        auto* buffer = static_cast<char*>(XML_GetBuffer(parser.get(), room));
        const auto bytes = buffer ? chunks.Take(units, buffer) : std::nullopt;
        if (!bytes)
            return false;
        last = chunks.At_End();
        if (XML_ParseBuffer(parser.get(), static_cast<int>(*bytes), last) != XML_STATUS_OK)
            return false;
        const XML_Index now = XML_GetCurrentByteIndex(parser.get());
        most_units = std::exchange(token, now) == now ? std::min(2 * most_units, longest_piece) : usual;
    }
    return true;
}

std::optional<Row_Store> Reader::Read() {
    const bool well_formed = Feed();
    if (failure)
        std::rethrow_exception(failure);
    if (!well_formed || !builder.Is_Complete())
        return std::nullopt;
    return std::move(builder).Finish();
}

} // namespace

std::optional<Row_Store> Read_Persisted(String_View text) {
    constexpr std::size_t longest = std::size_t{1} << 30U; // places in a row store have 32 bits
    // By a NUL at the beginning the parser would take the text for one of two bytes a character.
    if (text.size() > longest || text.substr(0, 4).find(u'\0') != String_View::npos)
        return std::nullopt;
    if (auto rows = Read_Canonical_Form(text))
        return rows;
    return Read_With_Parser(text);
}

std::optional<Row_Store> Read_With_Parser(String_View text) {
    return Reader(text).Read();
}

} // namespace recordset
