// The text of a persisted recordset into a table: this project's reader against other XML libraries on the
// same UTF-16 text. The others fill the leanest table that can answer the same questions (texts behind each
// other, and for each value its column and place); only this project's reader also checks the types.
#include <benchmark/benchmark.h>
#include <libxml/parserInternals.h>

#include <QXmlStreamReader>
#include <malloc.h>
#include <pugixml.hpp>

#include "automation/number.h"
#include "recordset/recordset.h"
#include "table.h"
#include "texts.h"

namespace {

using automation::String;
using benchmarks::Require;
using benchmarks::Shape;
using benchmarks::Table;

// The column of an attribute: mostly the one that is expected, else found by its name.
class Columns {
public:
    Columns() {
        for (const auto& field : benchmarks::Node_Fields())
            names.push_back(automation::To_UTF8(field.Name));
    }
    std::uint32_t Of(std::string_view name) {
        for (std::size_t tried = 0; tried < names.size(); ++tried) {
            const std::size_t column = next++ % names.size();
            if (names[column] == name)
                return static_cast<std::uint32_t>(column);
        }
        Require(false, "a known attribute");
        return 0;
    }

private:
    std::vector<std::string> names;
    std::size_t next = 0;
};

const String& Text_Of(const benchmark::State& state) {
    return benchmarks::Text(static_cast<Shape>(state.range(1)), static_cast<int>(state.range(0)));
}

void Check(const Table& table, const benchmark::State& state) {
    Require(table.Row_Ends.size() == static_cast<std::size_t>(state.range(0)), "every row");
}

std::size_t Bytes_In_Use() {
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void Read_Recordset(benchmark::State& state) {
    recordset::Offer_Classes();
    const String& text = Text_Of(state);
    for (auto _ : state) {
        const auto rows = benchmarks::Opened(text);
        Require(rows->Record_Count() == state.range(0), "every row");
    }
    const std::size_t before = Bytes_In_Use();
    const auto rows = benchmarks::Opened(text);
    state.counters["MiB"] = static_cast<double>(Bytes_In_Use() - before) / (1 << 20U);
}

void Read_With_Pugixml(benchmark::State& state) {
    const String& text = Text_Of(state);
    for (auto _ : state) {
        pugi::xml_document document;
        Require(document.load_buffer(text.data(), text.size() * 2, pugi::parse_default, pugi::encoding_utf16),
                "a document");
        Table table;
        Columns columns;
        for (const auto row : document.document_element().last_child().children()) {
            for (const auto attribute : row.attributes())
                table.Add(columns.Of(attribute.name()), attribute.value());
            if (row.type() == pugi::node_element)
                table.End_Row();
        }
        Check(table, state);
    }
}

// The reader of libxml2 that gives the most speed: its events, without a tree.
struct Events {
    Table Filled;
    Columns Column;

    static void Start(void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int,
                      const xmlChar**, int count, int, const xmlChar** attributes) {
        if (std::string_view(reinterpret_cast<const char*>(name)) != "row")
            return;
        auto& self = *static_cast<Events*>(context);
        for (int index = 0; index < count; ++index, attributes += 5)
            self.Filled.Add(
                self.Column.Of(reinterpret_cast<const char*>(attributes[0])),
                {reinterpret_cast<const char*>(attributes[3]), reinterpret_cast<const char*>(attributes[4])});
        self.Filled.End_Row();
    }
};

void Read_With_Libxml2(benchmark::State& state) {
    const String& text = Text_Of(state);
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = Events::Start;
    for (auto _ : state) {
        Events events;
        auto* const context = xmlCreatePushParserCtxt(&handler, &events, nullptr, 0, nullptr);
        xmlSwitchEncoding(context, XML_CHAR_ENCODING_UTF16LE);
        xmlCtxtUseOptions(context, XML_PARSE_HUGE);
        Require(xmlParseChunk(context, reinterpret_cast<const char*>(text.data()),
                              static_cast<int>(text.size() * 2), 1) == 0,
                "a document");
        xmlFreeParserCtxt(context);
        Check(events.Filled, state);
    }
}

void Read_With_Qt(benchmark::State& state) {
    const String& text = Text_Of(state);
    for (auto _ : state) {
        QXmlStreamReader reader(QString::fromRawData(reinterpret_cast<const QChar*>(text.data()),
                                                     static_cast<qsizetype>(text.size())));
        Table table;
        Columns columns;
        while (!reader.atEnd()) {
            if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != u"row")
                continue;
            for (const auto& attribute : reader.attributes())
                table.Add(columns.Of(attribute.qualifiedName().toUtf8().toStdString()),
                          attribute.value().toUtf8().toStdString());
            table.End_Row();
        }
        Require(!reader.hasError(), "a document");
        Check(table, state);
    }
}

void Row_Counts(benchmark::internal::Benchmark* benchmark) {
    for (const int shape : {0, 1, 2, 3})
        for (const int rows : {100, 3'000, 32'767})
            benchmark->Args({rows, shape});
    benchmark->ArgNames({"rows", "shape"})->Unit(benchmark::kMicrosecond);
}
BENCHMARK(Read_Recordset)->Apply(Row_Counts);
BENCHMARK(Read_With_Pugixml)->Apply(Row_Counts);
BENCHMARK(Read_With_Libxml2)->Apply(Row_Counts);
BENCHMARK(Read_With_Qt)->Apply(Row_Counts);

} // namespace

BENCHMARK_MAIN();
