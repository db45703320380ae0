// What is read is given back: files of every kind, loaded as the editor loads them and saved as it
// saves them, without a change and with one.

#include <gtest/gtest.h>

#include "document/document_support.h"
#include "editor/document/document.h"
#include "editor/text/file_content.h"
#include "editor/text/text_file.h"
#include "editor/text/text_saver.h"
#include "foundation/data_paths.h"
#include "support/temp_dir.h"

using namespace std::string_literals;

namespace {

enum class Mark { No, Yes };

// A text of lines with each line end and mixtures of them, in bytes of the encoding.
std::string linesIn(const TextEncoding& encoding, Mark mark, std::wstring_view last) {
  static const std::wstring ends[] = {L"\n",       L"\r\n",  L"\r",       L"\n\r",
                                      L"\n\n",     L"\r\r",  L"\r\n\r\n", L"\0"s.substr(0, 1),
                                      L"\r\n\0\n", L"\n\r\n"};
  std::wstring text;
  for (const std::wstring& end : ends) text += L"one, two \t three" + end;
  text += std::wstring(1, L'\0') + L"\r\n" + std::wstring(last);
  std::string bytes(mark == Mark::Yes ? markOf(encoding.format) : "");
  EXPECT_EQ(encodeText(text, encoding, bytes), AllEncoded);
  return bytes;
}

class GivenBack : public testing::Test {
 protected:
  GivenBack() { setConfigurationFile(dir.wide("home/td.ini")); }
  ~GivenBack() override { setConfigurationFile(L""); }

  // Loads the file as it says it is, or as it is chosen.
  void load(const std::string& bytes, const TextEncoding& chosen = {}) {
    dir.write("file", bytes);
    FileContent content;
    ASSERT_EQ(readFileContent(dir.wide("file"), content), 0);
    saver.opened(dir.wide("file"), content);
    found = CTextFile::detect(std::string_view(bytes).substr(0, CTextFile::DetectionBytes), chosen);
    ASSERT_TRUE(document.load(std::move(content.bytes), found.encoding, found.textStart));
  }
  void save() {
    const TextSaver::Outcome outcome = saver.save([this](const TextSaver::Sink& sink) {
      if (found.hasMark()) {
        if (const int error = sink(markOf(found.encoding.format))) return error;
      }
      const Document::Written written = document.write(document.encoding(), sink);
      return written.refused ? EILSEQ : written.error;
    });
    ASSERT_EQ(outcome.error, 0);
  }
  void expectGivenBack(const std::string& bytes, const TextEncoding& chosen = {}) {
    load(bytes, chosen);
    save();
    ASSERT_TRUE(dir.read("file") == bytes) << toUtf8(formatName(found.encoding)).data();
    // What was put in and taken out again has decoded and encoded its line.
    for (const int64_t line : {int64_t{0}, document.lineCount() - 1}) {
      const TextSpan text = TextSpan::fromText(L"x", LineEndStyle::Lf);
      const TextPlace end = document.replace({line, 0}, {line, 0}, text).end;
      document.replace({line, 0}, end, {});
    }
    save();
    ASSERT_TRUE(dir.read("file") == bytes) << toUtf8(formatName(found.encoding)).data();
  }

  TempDir dir;
  TextSaver saver;
  Document document;
  CTextFile found;
};

TEST_F(GivenBack, EveryEncodingWithAndWithoutAMarkWithEveryLineEnd) {
  for (const TextEncoding& encoding : Encodings) {
    for (const Mark mark : {Mark::No, Mark::Yes}) {
      for (const std::wstring_view last : {L"", L"no end", L"end\n", L"end\r"}) {
        expectGivenBack(linesIn(encoding, mark, last), encoding);
      }
    }
  }
}

TEST_F(GivenBack, FilesOfAlmostNothing) {
  for (const std::string& bytes :
       {""s, "\n"s, "a"s, "a\n"s, "\r"s, "\0"s, "\0\0"s, "\xEF\xBB\xBF"s, "\xFF\xFE"s, "\xFF"s,
        "\xFF\xFE\n"s, "\xFE\xFF\0\n\0"s, "\n\r\0\n\r\0"s, "\0\0\xFE\xFF\0"s}) {
    expectGivenBack(bytes);
  }
}

TEST_F(GivenBack, EveryByteAndEveryPairOfBytesInEveryEncoding) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  for (int i = 0; i < 256; ++i) {
    for (int j = 0; j < 256; ++j) {
      bytes += static_cast<char>(i);
      bytes += static_cast<char>(j);
    }
  }
  for (const TextEncoding& encoding : Encodings) expectGivenBack(bytes + "\x80\n\xC3", encoding);
}

TEST_F(GivenBack, ATailShorterThanAUnit) {
  for (const TextFormat format :
       {TextFormat::Utf16Le, TextFormat::Utf16Be, TextFormat::Utf32Le, TextFormat::Utf32Be}) {
    for (const std::string& tail : {"\n"s, "x"s, "\xFF"s}) {
      expectGivenBack(linesIn({format}, Mark::Yes, L"last") + tail);
      expectGivenBack(linesIn({format}, Mark::Yes, L"") + tail);
    }
  }
}

TEST_F(GivenBack, InvalidLinesOfUtf8AreCountedAndTheirBytesComeBack) {
  const std::string bytes = "good\nbad \xFF\nbad \xC3(\n\xED\xA0\x80\ngood \xC3\xA9";
  load(bytes, {TextFormat::Utf8});
  EXPECT_EQ(document.invalidLines(), 3);
  document.replace({1, 0}, {1, 3}, TextSpan::fromText(L"still bad", LineEndStyle::Lf));
  save();
  EXPECT_EQ(dir.read("file"), "good\nstill bad \xFF\nbad \xC3(\n\xED\xA0\x80\ngood \xC3\xA9");
}

TEST_F(GivenBack, AByteBehindTheTrialIsAnInvalidLine) {
  const std::string bytes = std::string(40000, 'a') + "\n\xE9\n";
  load(bytes);
  EXPECT_EQ(found.encoding.format, TextFormat::Utf8);
  EXPECT_EQ(document.invalidLines(), 1);
  load("\xE9\n" + bytes);
  EXPECT_EQ(found.encoding.format, TextFormat::CodePage);
  EXPECT_EQ(document.invalidLines(), 0);
}

TEST_F(GivenBack, OneLineEndAndNoneAreOneAndTwoLines) {
  load("");
  EXPECT_EQ(document.lineCount(), 1);
  load("a");
  EXPECT_EQ(document.lineCount(), 1);
  EXPECT_EQ(document.lineEndStyle(), LineEndStyle::Lf);
  load("a\n");
  EXPECT_EQ(document.lineCount(), 2);
  load("\r");
  EXPECT_EQ(document.lineCount(), 2);
  EXPECT_EQ(document.lineEndStyle(), LineEndStyle::Lf);
  load("a\r\nb");
  EXPECT_EQ(document.lineEndStyle(), LineEndStyle::CrLf);
}

TEST_F(GivenBack, ReadingInAnotherFormatKeepsTheMarkOfThat) {
  const std::string bytes = "\xEF\xBB\xBFtext\n";
  load(bytes);
  EXPECT_EQ(document.text(0), L"text");
  const TextEncoding page{TextFormat::CodePage, 1252};
  ASSERT_TRUE(document.load(bytes, page, CTextFile::readAs(page, bytes).textStart));
  EXPECT_EQ(document.text(0), L"\u00EF\u00BB\u00BFtext");
  ASSERT_TRUE(document.load(bytes, {TextFormat::Utf8},
                            CTextFile::readAs({TextFormat::Utf8}, bytes).textStart));
  EXPECT_EQ(document.text(0), L"text");
}

}  // namespace

TEST_F(GivenBack, AnEditInAPageWithoutAsciiLeavesTheBytesAroundIt) {
  constexpr TextEncoding Page500{TextFormat::CodePage, 500};
  const std::string bytes("\x82\x25\x83\r\n\x84\x15\x8E\n\x85\0\x86", 12);
  for (int64_t line = 0; line < 4; ++line) {
    ASSERT_TRUE(document.load(bytes, Page500));
    ASSERT_EQ(document.lineCount(), 4);
    document.replace({line, 0}, {line, 0}, spanOf(L"a"));
    ASSERT_EQ(document.lineCount(), 4);
    const size_t starts[] = {0, 5, 9, 11};
    std::string expected = bytes;
    expected.insert(starts[line], 1, '\x81');
    EXPECT_EQ(writtenBytes(document, Page500), expected) << line;
    document.replace({line, 0}, {line, 1}, {});
    EXPECT_EQ(writtenBytes(document, Page500), bytes) << line;
  }
}
