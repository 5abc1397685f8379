// Parsing of a settings file of 1 MB, into a tree and back to nothing, beside libxml2 doing the
// same.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <string>

#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_parser.h"

namespace {

constexpr size_t kBytes = 1 << 20;

// Sensors with all that is known of them in attributes, or each in an element of its own.
enum Shape { kInAttributes, kInElements };

std::string Settings(Shape shape) {
  static constexpr const char* kNames[] = {"left_margin",   "right_margin",    "top_margin",
                                           "bottom_margin", "capture_timeout", "flush_time"};
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<SETTINGS>\r\n";
  for (int id = 2000; text.size() < kBytes; ++id) {
    text += "  <SENSOR id=\"" + std::to_string(id) + '"';
    if (shape == kInElements) text += '>';
    for (const char* name : kNames) {
      const std::string number = std::to_string((id * 7) % 1000);
      text += shape == kInAttributes
                  ? " " + std::string(name) + "=\"" + number + '"'
                  : "\r\n    <" + std::string(name) + '>' + number + "</" + std::string(name) + '>';
    }
    text += shape == kInAttributes ? "/>\r\n" : "\r\n  </SENSOR>\r\n";
  }
  return text + "</SETTINGS>\r\n";
}

void ParseOurs(benchmark::State& state) {
  const std::string text = Settings(static_cast<Shape>(state.range(0)));
  for (auto _ : state) {
    zyr::XmlDocument document;
    if (!zyr::XmlParser().ParseText(text.c_str(), &document, 0)) {
      state.SkipWithError("not parsed");
      break;
    }
    benchmark::DoNotOptimize(document.GetRoot()->GetChildElementCount());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void ParseLibXml2(benchmark::State& state) {
  const std::string text = Settings(static_cast<Shape>(state.range(0)));
  for (auto _ : state) {
    xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                     XML_PARSE_NOBLANKS);
    if (document == nullptr) {
      state.SkipWithError("not parsed");
      break;
    }
    benchmark::DoNotOptimize(xmlChildElementCount(xmlDocGetRootElement(document)));
    xmlFreeDoc(document);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

BENCHMARK(ParseOurs)->Arg(kInAttributes)->Arg(kInElements)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseLibXml2)->Arg(kInAttributes)->Arg(kInElements)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
