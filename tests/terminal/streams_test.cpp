// What real programs write to a terminal of type "ansi", recorded, against the screens that a
// common terminal makes of it.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "emulator_test.h"
#include "foundation/utf8.h"
#include "terminal/utf8_tail.h"

namespace {
namespace fs = std::filesystem;

fs::path streamsDirectory() {
  return fs::absolute(__FILE__).parent_path() / "streams";
}

std::string contentOf(const fs::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

// A screen as the files tell it: the size and the cursor, then for each row its text between two
// bars and below it runs of attributes, "41*6" for six cells of blue on red. Of a blank only the
// background counts, and so one without letters around it is "4.".
struct ExpectedScreen {
  GridSize size;
  std::string cursor;
  std::vector<std::string> rows;
  std::vector<std::vector<std::string>> attributes;  // of each cell

  explicit ExpectedScreen(const fs::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    char at[16];
    if (sscanf(line.c_str(), "%d by %d, cursor %15s", &size.columns, &size.rows, at) == 3) {
      cursor = at;
    }
    while (std::getline(in, line)) {
      rows.push_back(line.substr(1, line.size() - 2));
      std::getline(in, line);
      attributes.push_back(cellsOf(line));
    }
  }

 private:
  static std::vector<std::string> cellsOf(const std::string& runs) {
    std::vector<std::string> result;
    std::istringstream in(runs);
    for (std::string run; in >> run;) {
      result.insert(result.end(), static_cast<size_t>(std::stoi(run.substr(3))), run.substr(0, 2));
    }
    return result;
  }
};

class Streams : public EmulatorTest {
 protected:
  void TearDown() override {
    console->setGeometry(80, 25, "", 0);
    EmulatorTest::TearDown();
  }

  // In pieces of this many bytes, but whole characters.
  void feedInPieces(std::string_view bytes, size_t piece) {
    while (!bytes.empty()) {
      size_t count = std::min(piece, bytes.size());
      while (count < bytes.size() && unfinishedUtf8(bytes.substr(0, count)) > 0) ++count;
      feed(bytes.substr(0, count));
      bytes.remove_prefix(count);
    }
  }

  std::string attributeAt(int x, int y, const std::string& like) const {
    const Cell cell = cellAt(x, y);
    char text[8];
    snprintf(text, sizeof text, "%02X", cell.attr);
    if (like[1] == '.') text[1] = '.';
    return cell.ch == L' ' ? text[0] + like.substr(1) : text;
  }

  void expectScreen(const ExpectedScreen& expected) {
    ASSERT_EQ(expected.rows.size(), static_cast<size_t>(expected.size.rows));
    EXPECT_EQ(cursor(), expected.cursor);
    for (int y = 0; y < expected.size.rows; ++y) {
      const auto row = static_cast<size_t>(y);
      EXPECT_EQ(rowText(y), expected.rows[row]) << "row " << y;
      ASSERT_EQ(expected.attributes[row].size(), static_cast<size_t>(expected.size.columns));
      for (int x = 0; x < expected.size.columns; ++x) {
        const std::string& wanted = expected.attributes[row][static_cast<size_t>(x)];
        EXPECT_EQ(attributeAt(x, y, wanted), wanted) << "column " << x << " row " << y;
      }
    }
  }
};
}  // namespace

TEST_F(Streams, EachGivesTheScreenOfACommonTerminal) {
  int looked = 0;
  for (const auto& item : fs::directory_iterator(streamsDirectory())) {
    if (item.path().extension() != ".stream") continue;
    SCOPED_TRACE(item.path().filename());
    const ExpectedScreen expected(fs::path(item.path()).replace_extension(".txt"));
    const std::string bytes = contentOf(item.path());
    ASSERT_FALSE(bytes.empty());
    for (const size_t piece : {bytes.size(), size_t{4096}, size_t{7}, size_t{1}}) {
      SCOPED_TRACE(piece);
      console->setGeometry(expected.size.columns, expected.size.rows, "", 0);
      console->setCursorPos(0, 0);
      emulator = std::make_unique<CAnsiTerminalEmulator>(*console, *input, logPath.c_str());
      feedInPieces(bytes, piece);
      expectScreen(expected);
      ++looked;
      if (HasFailure()) break;
    }
  }
  EXPECT_GE(looked, 60);
}
