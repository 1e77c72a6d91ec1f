// Faults caught here: lines of the log run together or doubled, a format, shape or picture that
// does not survive writing and reading, and a picture file whose size is misread.
#include "rtf/rich_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "rtf/dib.h"
#include "rtf/picture_bytes.h"
#include "rtf/rtf_reader.h"
#include "rtf/rtf_writer.h"
#include "rtf_samples.h"

using namespace quorvane;

TEST(AppendText, KeepsLinesApartAndRunsTogether) {
  RichText text;
  CharFormat bold;
  bold.bold = true;
  for (const char* line : {"one\r\n", "", "t", "wo\n", "\a\x7Fthree\r"}) AppendText(text, line, {});
  AppendText(text, "bold", bold);
  EXPECT_EQ(PlainText(text), "one\ntwo\nthree\nbold");
  for (const Paragraph& paragraph : text.paragraphs) EXPECT_EQ(paragraph.items.size(), 1u);
  EXPECT_EQ(text.paragraphs[3].markFormat, bold);
}

TEST(AppendRichText, GoesOnInTheLastParagraph) {
  RichText text;
  AppendText(text, "one\ntwo", {});
  AppendRichText(text, text);
  EXPECT_EQ(PlainText(text), "one\ntwoone\ntwo");
  EXPECT_EQ(text.paragraphs[1].items.size(), 1u);
  RichText sample;
  AppendRichText(sample, RichSample());
  EXPECT_EQ(sample, RichSample());
}

TEST(WriteRtf, IsReadBackEqual) {
  RichText other = RichSample();
  other.defaultFamily = "Liberation Mono";
  for (const RichText& text : {RichText(), RichSample(), other}) {
    const std::string rtf = WriteRtf(text);
    const RtfDocument document = ReadRtf(rtf);
    EXPECT_TRUE(document.text == text) << rtf;
    EXPECT_EQ(document.warnings, std::vector<std::string>());
    EXPECT_EQ(
        rtf.find_first_not_of("\r\n !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                              "[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~"),
        std::string::npos);
  }
}

TEST(PictureFromFile, ReadsTheSizeAndRefusesTheRest) {
  const Picture jpeg = PictureFromFile(kJpeg);
  EXPECT_EQ(jpeg.pixelWidth, 300);
  EXPECT_EQ(jpeg.pixelHeight, 200);
  EXPECT_EQ(jpeg.widthTwips, 4500);
  std::string wide = kPng;
  wide.replace(16, 8, std::string("\0\0\x27\x10\0\0\x01\xF4", 8));  // 10000 x 500
  EXPECT_EQ(PictureFromFile(wide).widthTwips, kMaxTwips);
  EXPECT_EQ(PictureFromFile(wide).heightTwips, kMaxTwips / 20);
  std::string huge = kPng;
  huge.replace(16, 8, std::string("\0\0\x7F\xFF\0\0\x7F\xFF", 8));
  for (const std::string& bytes :
       {huge, kPng.substr(0, 20), kJpeg.substr(0, 12), kJpeg.substr(0, 8) + "damaged",
        std::string(), std::string("GIF89a")}) {
    EXPECT_THROW(PictureFromFile(bytes), PictureFault) << bytes;
  }
}

TEST(BmpFromDib, KnowsTheKindsOfBitmap) {
  const struct {
    int width, height, bits, compression;
    bool good;
  } kCases[] = {{9, 2, 1, 0, true},      {3, 2, 4, 0, true},         {3, -2, 8, 0, true},
                {3, 2, 16, 3, true},     {3, 2, 24, 0, true},        {3, 2, 32, 0, true},
                {3, 2, 8, 1, false},     {3, 2, 2, 0, false},        {3, 2, 24, 3, false},
                {0, 2, 24, 0, false},    {-3, 2, 24, 0, false},      {3, 0, 24, 0, false},
                {40000, 1, 1, 0, false}, {30000, 20000, 1, 0, false}};
  for (const auto& c : kCases) {
    const bool small = c.width > 0 && c.width < 100 && c.height != 0;
    const std::string dib = small ? Dib(c.width, c.height, c.bits, c.compression)
                                  : Dib(1, 1, c.bits).replace(4, 8, Le32({c.width, c.height}));
    if (!c.good) {
      EXPECT_THROW(BmpFromDib(dib), PictureFault) << c.width << " " << c.bits;
      continue;
    }
    const std::string bmp = BmpFromDib(dib + "more");
    EXPECT_EQ(bmp.size(), dib.size() + 14);
    EXPECT_EQ(DibFromBmp(bmp), dib);
    EXPECT_THROW(BmpFromDib(dib.substr(0, dib.size() - 1)), PictureFault);
  }
}
