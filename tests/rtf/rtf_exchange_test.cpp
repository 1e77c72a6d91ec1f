// Faults caught here: files of ours that word processors open without their text or pictures.
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "rtf/rich_text.h"
#include "rtf/rtf_writer.h"
#include "rtf_samples.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

bool Succeeds(const std::string& command) {
  return std::system(("(" + command + ") >/dev/null 2>&1").c_str()) == 0;
}

// Text in several scripts, a PNG and a bitmap.
std::string ExchangeRtf() {
  RichText text;
  CharFormat bold;
  bold.bold = true;
  AppendText(text, "Fit\tof {3} \u03C3 5 \u20AC \U0001F600 \u00B1\r\n", {});
  AppendText(text, "bold\r\n", bold);
  for (const std::string& file : {kPng, "BM" + Le32({78, 0, 54}) + Dib(3, 2, 24)}) {
    Picture picture = PictureFromFile(file);
    picture.widthTwips = file == kPng ? 2880 : 1440;
    AppendPicture(text, picture);
    AppendText(text, "\r\n", {});
  }
  AppendText(text, "last", {});
  return WriteRtf(text);
}

}  // namespace

TEST(WriteRtf, OpensInAWordProcessor) {
  if (!Succeeds("command -v soffice && command -v unzip")) GTEST_SKIP() << "no soffice or unzip";
  TempFolder folder;
  folder.Write("log.rtf", ExchangeRtf());
  const std::string here = folder.path().string();
  ASSERT_TRUE(Succeeds("cd '" + here + "' && HOME='" + here +
                       "' LC_ALL=C soffice -env:UserInstallation='file://" + here +
                       "/profile' --headless --convert-to odt log.rtf"));
  ASSERT_TRUE(Succeeds("cd '" + here + "' && unzip -o log.odt -d odt"));
  const std::string content = ReadText(folder / "odt/content.xml");
  for (const char* part : {"Fit<text:tab/>of {3} \u03C3 5 \u20AC \U0001F600 \u00B1", "bold", "last",
                           "svg:width=\"2in\"", "svg:width=\"1in\""}) {
    EXPECT_NE(content.find(part), std::string::npos) << part << " in\n"
                                                     << content.substr(content.size() * 2 / 3);
  }
  std::size_t pictures = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "odt/Pictures")) {
    const std::string bytes = ReadText(entry.path());
    pictures += bytes == kPng || bytes.starts_with("BM") ? 1 : 0;
  }
  EXPECT_EQ(pictures, 2u);
}

TEST(WriteRtf, OpensInAPlainConverter) {
  if (!Succeeds("command -v unrtf")) GTEST_SKIP() << "no unrtf";
  TempFolder folder;
  folder.Write("log.rtf", ExchangeRtf());
  ASSERT_EQ(std::system(("cd '" + folder.path().string() +
                         "' && unrtf --html log.rtf >log.html "
                         "2>/dev/null")
                            .c_str()),
            0);
  const std::string html = ReadText(folder / "log.html");
  for (const char* part : {"of {3} &sigma; 5", "<b>bold", "last"}) {
    EXPECT_NE(html.find(part), std::string::npos) << part << " in\n" << html;
  }
  EXPECT_EQ(ReadText(folder / "pict001.png"), kPng);
}
