// Faults caught here: texts of rich edit controls and word processors that come out with words
// lost, doubled or in wrong letters, formats that leak out of their group, and pictures not found.
#include "rtf/rtf_reader.h"

#include <fstream>
#include <iterator>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "rtf_samples.h"

using namespace quorvane;

namespace {

constexpr const char* kHead =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}"
    "{\\f1\\froman\\fcharset2{\\*\\panose 05}Symbol;}{\\f2\\fcharset204{\\*\\falt X;}Arial;}"
    "{\\f3\\fcharset161 A;}{\\f4\\fcharset238 B;}{\\f5\\fcharset128 C;}{\\f6\\fcharset2 "
    "Signs;}}\r\n"
    "{\\colortbl ;\\red255\\green0\\blue16;}\r\n\\viewkind4\\uc1\\pard\\lang1033\\f0\\fs20 ";

RtfDocument ReadBody(const std::string& body) {
  return ReadRtf(kHead + body + "}");
}

// The pictures of a document that has nothing else in it.
std::vector<Picture> PicturesOf(const RichText& text) {
  std::vector<Picture> pictures;
  for (const Paragraph& paragraph : text.paragraphs) {
    for (const InlineItem& item : paragraph.items) {
      EXPECT_TRUE(std::holds_alternative<Picture>(item)) << std::get<TextRun>(item).text;
      if (const auto* picture = std::get_if<Picture>(&item)) pictures.push_back(*picture);
    }
  }
  return pictures;
}

}  // namespace

TEST(ReadRtf, GivesTheTextThatIsShown) {
  const struct {
    const char* body;
    const char* plain;
  } kCases[] = {
      {"", ""},
      {"one\\par\r\ntwo\\par\r\n", "one\ntwo"},
      {"one\\par\r\n\\par", "one\n"},
      {"on\r\ne\\\ntwo\\line\\tab\tx", "one\ntwo\u2028\t\tx"},
      {"\\{\\\\\\}\\~\\_\\-\\emdash\\endash \\bullet\\lquote\\rquote\\ldblquote\\rdblquote",
       "{\\}\u00A0\u2011\u00AD\u2014\u2013\u2022\u2018\u2019\u201C\u201D"},
      {"\\'80\\'b1\\'E9\x80\\'81", "\u20AC\u00B1\u00E9\u20AC\uFFFD"},
      {"\\u945?\\u-10179?\\u-8704?\\u55357\\'3f\\u56832\\'3f.", "\u03B1\U0001F600\U0001F600."},
      {"\\u55357?x\\u56832?\\u-10179?", "\uFFFDx\uFFFD\uFFFD"},
      {"{\\uc2\\u945ab\\uc0\\u946 c}\\u947{}d\\u948\\tab e\\u949\\u950?", "αβcγdδeεζ"},
      {"{\\f1 abG\\'b1\\u-3999?}{\\f2\\'c0\\'ff}{\\f3\\'e1}{\\f4\\'b3}{\\f5\\'e9z}{\\f6 "
       "x}{\\f9\\'e9}",
       "αβΓ±αАяαł\uFFFDz\uFFFDé"},
      {"{\\info{\\title t}}{\\header h}{\\stylesheet{\\s1 n;}}{\\*\\unknown{x}y}{\\unknown z}{\\v "
       "no}",
       "z"},
      {"{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt{shown}}}{\\fldinst y}", "shown"},
      {"{\\upr{ansi{\\b a}}{\\*\\ud{\\u945?}}}", "α"},
      {"{\\pntext\\f1\\'B7\\tab}{\\*\\pn{\\pntxtb\\'B7}}item", "\u2022\titem"},
      {"\\trowd a\\cell\\cell b\\cell\\cell\\row\\trowd\\intbl c\\cell\\row d", "a\t\tb\t\nc\nd"},
      {"a\\sect\\page b\\page", "a\nb"},
      {"{\\shp{\\*\\shpinst{\\sp{\\sn a}{\\sv 1}}{\\shptxt box}}{\\shprslt twin}}", "box"},
      {"a\\b1234567890123456789b}ignored {\\par", "ab"}};
  for (const auto& c : kCases) {
    EXPECT_EQ(PlainText(ReadBody(c.body).text), c.plain) << c.body;
  }
}

TEST(ReadRtf, TakesFormats) {
  const auto with = [](auto&& change) {
    CharFormat format;
    change(format);
    return format;
  };
  const struct {
    const char* body;
    CharFormat format;
  } kCases[] = {
      {"x", {}},
      {"\\plain x", with([](CharFormat& f) { f.halfPoints = 24; })},
      {"{\\b\\i\\ul\\f2}x", {}},
      {"{\\b\\i x}", with([](CharFormat& f) { f.bold = f.italic = true; })},
      {"\\b\\ul\\strike\\b0\\ulnone x", with([](CharFormat& f) { f.strikeout = true; })},
      {"\\f2\\cf1\\fs99999 x", with([](CharFormat& f) {
         f.family = "Arial";
         f.color = 0x1000FF;
         f.halfPoints = kMaxHalfPoints;
       })},
      {"\\cf1\\super\\cf7 x", with([](CharFormat& f) { f.script = ScriptPosition::kSuperscript; })},
      {"\\dn6 x", with([](CharFormat& f) { f.script = ScriptPosition::kSubscript; })},
      {"\\dn6\\up0\\f1 x", {}}};
  for (const auto& c : kCases) {
    const RichText text = ReadBody(c.body).text;
    ASSERT_EQ(text.paragraphs.size(), 1u);
    ASSERT_EQ(text.paragraphs[0].items.size(), 1u) << c.body;
    EXPECT_TRUE(std::get<TextRun>(text.paragraphs[0].items[0]).format == c.format) << c.body;
  }
  const RichText shaped = ReadBody("\\qr\\li720\\fi-99999\\tx50\\tx90 x\\par\\pard y").text;
  EXPECT_EQ(shaped.paragraphs[0].format,
            (ParagraphFormat{Alignment::kRight, 720, -kMaxTwips, {50, 90}}));
  EXPECT_EQ(shaped.paragraphs[1].format, ParagraphFormat());
}

TEST(ReadRtf, FindsPicturesOfEveryKind) {
  const std::string dib = Dib(3, 2, 24);
  const std::string bmp = "BM" + Le32({14 + static_cast<int>(dib.size()), 0, 54}) + dib;
  const std::string small = Dib(1, 1, 24);
  const std::string png = "{\\pict{\\*\\blipuid 0123ab}\\pngblip " + Hex(kPng) + "}";
  const std::string wmf = "{\\pict\\wmetafile8 " + Hex(Wmf(0x0F43, 22, dib)) + "}";
  const struct {
    std::string body;
    std::string bytes;
  } kCases[] = {
      {png, kPng},
      {"{\\*\\shppict" + png + "}{\\nonshppict" + wmf + "}", kPng},
      {"{\\shp{\\*\\shpinst{\\sp{\\sn pib}{\\sv " + png + "}}}{\\shprslt " + wmf + "}}", kPng},
      {"{\\pict\\jpegblip\\bin17 " + kJpeg + "}", kJpeg},
      {"{\\pict\\dibitmap0 " + Hex(dib) + "}", bmp},
      {wmf, bmp},
      {"{\\pict\\wmetafile8 " +
           Hex(Le(0x9AC6CDD7, 4) + std::string(18, '\0') + Wmf(0x0B41, 20, dib)) + "}",
       bmp},
      {"{\\object\\objemb{\\*\\objdata 0105}{\\result " + wmf + "}}", bmp},
      {"{\\pict\\wmetafile8 " + Hex(Wmf(0x0940, 16, dib)) + "}", bmp},
      {"{\\pict\\wmetafile8 " + Hex(Wmf(0x0D33, 18, dib)) + "}", bmp},
      {"{\\pict\\emfblip " + Hex(Emf(81, 48, dib)) + "}", bmp},
      {"{\\pict\\emfblip " + Hex(Emf(76, 84, dib)) + "}", bmp}};
  for (const auto& c : kCases) {
    const RtfDocument document = ReadBody(c.body);
    const std::vector<Picture> pictures = PicturesOf(document.text);
    ASSERT_EQ(pictures.size(), 1u) << c.body;
    EXPECT_EQ(Hex(pictures[0].bytes), Hex(c.bytes));
    EXPECT_EQ(document.warnings, std::vector<std::string>());
  }
}

TEST(ReadRtf, ShowsPicturesInTheirSize) {
  const struct {
    std::string words;
    int width, height;
  } kCases[] = {{"\\picw2\\pich1", 30, 15},
                {"\\picwgoal600\\pichgoal300\\picscalex50\\picscaley200", 300, 600},
                {"\\picwgoal-5\\pichgoal99999999", 30, kMaxTwips}};
  for (const auto& c : kCases) {
    const Picture picture =
        PicturesOf(ReadBody("{\\pict\\pngblip" + c.words + " " + Hex(kPng) + "}").text).at(0);
    EXPECT_EQ(picture.widthTwips, c.width) << c.words;
    EXPECT_EQ(picture.heightTwips, c.height) << c.words;
  }
  const Picture drawn = PicturesOf(ReadBody("{\\pict\\wmetafile8\\picw2540\\pich1270 " +
                                            Hex(Wmf(0x0F43, 22, Dib(3, 2, 24))) + "}")
                                       .text)
                            .at(0);
  EXPECT_EQ(drawn.widthTwips, 1440);
  EXPECT_EQ(drawn.heightTwips, 720);
}

TEST(ReadRtf, PutsATextForPicturesThatItCannotShow) {
  for (const std::string& words : {std::string("\\macpict 00"), std::string("\\pngblip 89504e47"),
                                   "\\wmetafile8 " + Hex(Wmf(0x0213, 8, "")), std::string()}) {
    const RtfDocument document = ReadBody("a{\\pict" + words + "}b");
    EXPECT_EQ(PlainText(document.text), "a[picture]b");
    EXPECT_EQ(document.warnings.size(), 1u) << words;
  }
}

TEST(ReadRtf, ReadsAWordProcessorsFile) {
  std::ifstream in(QUORVANE_SOURCE_DIR "/tests/rtf/samples/word_processor.rtf", std::ios::binary);
  const RtfDocument document = ReadRtf(std::string(std::istreambuf_iterator<char>(in), {}));
  EXPECT_EQ(PlainText(document.text),
            "Cell bold italic \u03B1\u03C3 5 \u20AC \U0001F600\na\tb\n\nend2 link");
  EXPECT_EQ(std::get<Picture>(document.text.paragraphs.at(2).items.at(0)).widthTwips, 120);
  EXPECT_EQ(document.text.defaultFamily, "Liberation Serif");
  EXPECT_EQ(document.warnings, std::vector<std::string>());
}

TEST(ReadRtf, RefusesWhatIsNoRtf) {
  for (const char* bytes : {"", "{", "{\\rt", "plain", " {\\rtf1 x}", "PK\x03\x04"}) {
    EXPECT_THROW(ReadRtf(bytes), RtfFault) << bytes;
  }
  try {
    ReadRtf("{\\text}");
  } catch (const RtfFault& fault) {
    EXPECT_NE(std::string(fault.what()).find("byte 2"), std::string::npos) << fault.what();
  }
}
