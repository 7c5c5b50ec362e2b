#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QLocale>
#include <filesystem>
#include <locale>
#include <sstream>

#include "BatchSession.h"
#include "CBlockMove.h"
#include "FormDialog.h"
#include "FrameRig.h"
#include "temporary_folder.h"

// Where people write numbers with a comma, the program does not.

namespace velmora::test {
namespace {

using testing::HasSubstr;

class CommaNumbers : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Streams and the toolkit write "1.234,5" for the life of the object.
class CommaLocale {
public:
    CommaLocale() : before_(std::locale::global(std::locale(std::locale::classic(), new CommaNumbers))) {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::locale::global(before_);
        QLocale::setDefault(toolkitBefore_);
    }

private:
    std::locale before_;
    QLocale toolkitBefore_;
};

TEST(CommaLocale, IsOneIndeed) {
    const CommaLocale comma;
    std::ostringstream stream;
    stream << 1234.5;
    EXPECT_EQ(stream.str(), "1.234,5");
    EXPECT_EQ(QLocale().toString(0.5), QStringLiteral("0,5"));
}

TEST(CommaLocale, ADialogShowsAndTakesPoints) {
    const CommaLocale comma;
    CBlockMove values;
    values.deltaX = 1234.5;
    DialogForm form = describe(values);
    openDialog(form);
    FormDialog dialog(form);
    auto& edit = *dialog.findChild<QLineEdit*>(QStringLiteral("deltaX"));
    EXPECT_EQ(edit.text(), QStringLiteral("1234.5"));
    edit.setText(QStringLiteral("0.25"));
    dialog.accept();
    EXPECT_EQ(values.deltaX, 0.25);
}

TEST(CommaLocale, TheStatusLineTellsPoints) {
    const CommaLocale comma;
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("point.capture");
    rig.clickOn({6.0, 1.0, 0.0});
    EXPECT_THAT(plainBytes(rig.message()), HasSubstr("X=6.000000, Y=1.000000"));
}

/// What scripts print of a model that is read, moved, measured and written.
std::string printed(const std::filesystem::path& model, const std::filesystem::path& written) {
    std::ostringstream out;
    JsonEventPrinter printer(out);
    BatchSession session(printer, {model.parent_path(), {}, false});
    std::int64_t number = 0;
    for (const std::string& line :
         {"open " + model.string(), std::string("run model.scaling scale=1.25"), std::string("print report"),
          std::string("print patches"), "run file.saveAs file=" + written.string()}) {
        session.run(++number, line);
    }
    return out.str();
}

TEST(CommaLocale, FilesAndScriptsAreTheSame) {
    const FlatDesk desk;
    const std::filesystem::path written = desk.folder / "written.apt";
    const std::string plain = printed(desk.model, written);
    const std::string file = fileText(written);
    EXPECT_THAT(plain, HasSubstr("1.25"));
    EXPECT_THAT(file, HasSubstr("1.25"));
    std::filesystem::remove(written);
    const CommaLocale comma;
    EXPECT_EQ(printed(desk.model, written), plain);
    EXPECT_EQ(fileText(written), file);
}

} // namespace
} // namespace velmora::test
