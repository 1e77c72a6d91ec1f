// Faults caught here: damaged or hostile files that crash the reader, hang it, or make it take
// memory that nothing in the file pays for.
#include <string>

#include <gtest/gtest.h>

#include "rtf/rtf_reader.h"
#include "rtf/rtf_writer.h"
#include "rtf_samples.h"

using namespace quorvane;

namespace {

const std::string kWrapped = "{\\pict\\wmetafile8 " + Hex(Wmf(0x0F43, 22, Dib(3, 2, 24))) +
                             "}{\\pict\\emfblip " + Hex(Emf(81, 48, Dib(3, 2, 8))) +
                             "}{\\pict\\jpegblip\\bin17 " + kJpeg + "}}";

// The rich sample with pictures in every wrapping behind it.
std::string Sample() {
  const std::string rtf = WriteRtf(RichSample());
  return rtf.substr(0, rtf.rfind('}')) + kWrapped;
}

std::string Repeated(std::string_view text, int count) {
  std::string all;
  for (int k = 0; k < count; ++k) all += text;
  return all;
}

}  // namespace

TEST(ReadRtf, ReadsEveryTruncation) {
  const std::string rtf = Sample();
  for (std::size_t length = 5; length < rtf.size(); ++length) {
    const RtfDocument document = ReadRtf(std::string_view(rtf).substr(0, length));
    EXPECT_FALSE(document.warnings.empty()) << length;
    EXPECT_GE(document.text.paragraphs.size(), 1u);
  }
}

TEST(ReadRtf, HoldsItsLimits) {
  const std::string png = "{\\pict\\pngblip " + Hex(kPng) + "}";
  std::string large = kPng;
  large.replace(16, 8, std::string("\0\0\x13\x88\0\0\x13\x88", 8));  // 25 million pixels
  const struct {
    const char* what;
    std::string body;
    std::string start;  // of the text
  } kCases[] = {
      {"depth", "a" + std::string(1'000'000, '{') + "b" + std::string(1'000'000, '}') + "c", "ac"},
      {"closed too often", "a" + std::string(1'000'000, '}'), "a"},
      {"runs", Repeated("\\b x\\b0 y", 400'000), "xyxyxy"},
      {"paragraphs", Repeated("\\par ", 1'000'000), "\n\n\n"},
      {"binary", "a{\\pict\\pngblip\\bin2000000000 x}b", "a[picture]"},
      {"bitmap",
       "{\\pict\\dibitmap0 " + Hex(Dib(1, 1, 24).replace(4, 8, Le32({32000, 32000}))) + "}",
       "[picture]"},
      {"pictures", Repeated(png, static_cast<int>(kMaxRtfPictures) + 2) + "end", "[picture]"},
      {"pixels", Repeated("{\\pict\\pngblip " + Hex(large) + "}", 11), "[picture]"},
      {"fonts", Repeated("{\\fonttbl{\\f7 " + std::string(500, 'x') + ";}}", 1000) + "\\f7 a",
       "a"}};
  for (const auto& c : kCases) {
    const RtfDocument document = ReadRtf("{\\rtf1 " + c.body + "}");
    EXPECT_TRUE(PlainText(document.text).starts_with(c.start)) << c.what;
    EXPECT_LE(document.warnings.size(), kMaxRtfWarnings);
    std::size_t items = 0;
    for (const Paragraph& paragraph : document.text.paragraphs) items += paragraph.items.size();
    EXPECT_LE(items + document.text.paragraphs.size(), 500'001u) << c.what;
  }
}
