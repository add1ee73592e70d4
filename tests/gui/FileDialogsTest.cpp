// Dialogs for files, typed into as a person does, over the virtual clock.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <fstream>

#include "WindowEngine/support/Loops.hpp"
#include "app/gui/FileDialogs.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

class FileDialogsTest : public testing::Test {
  protected:
    template <class Dialog>
    static Dialog* open() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* const dialog = qobject_cast<Dialog*>(widget); dialog && dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }
    bool until(const std::function<bool()>& condition) {
        return QTest::qWaitFor([&] {
            executor.runFor(std::chrono::milliseconds(10));
            return condition();
        });
    }
    bool over() {
        return until([&] { return job->done(); });
    }
    void begin(Task<FileDialogs::File> task) { job.emplace(executor, std::move(task)); }
    /// Into the file dialog, which is the open one.
    void answer(const std::string& name) {
        ASSERT_TRUE(until([] { return open<QFileDialog>() != nullptr; }));
        auto* const field = open<QFileDialog>()->findChild<QLineEdit*>("fileNameEdit");
        field->setText(QString::fromStdString(name));
        QTest::keyClick(field, Qt::Key_Return);
    }
    void answerQuestion(const QString& button) {
        ASSERT_TRUE(until([] { return open<QMessageBox>() != nullptr; }));
        for (QAbstractButton* one : open<QMessageBox>()->buttons()) {
            if (one->text().remove('&') == button) return one->click();
        }
        FAIL() << "no such button";
    }

    const TemporaryDirectory directory;
    VirtualExecutor executor;
    FileDialogs dialogs{[] { return nullptr; }};
    std::optional<Job<FileDialogs::File>> job;
};

TEST_F(FileDialogsTest, AFileIsReplacedOnlyAfterThePersonAgreed) {
    std::ofstream(directory / "there.json") << "{}";
    begin(dialogs.fileToWrite("Work.quillo.json"));
    ASSERT_TRUE(until([] { return open<QFileDialog>() != nullptr; }));
    EXPECT_EQ(QFileInfo(open<QFileDialog>()->selectedFiles().value(0)).fileName(), "Work.quillo.json");
    answer((directory / "there").string());
    answerQuestion("Cancel");
    answer((directory / "there").string());
    answerQuestion("Replace");
    ASSERT_TRUE(over());
    EXPECT_EQ(job->result(), directory / "there.json");

    begin(dialogs.fileToWrite("new"));
    answer((directory / "neu 名.json").string());
    ASSERT_TRUE(over());
    EXPECT_EQ(job->result(), directory / "neu 名.json");
}

TEST_F(FileDialogsTest, ReadingGivesThePathOrNothingAndStartsWhereOneWas) {
    std::ofstream(directory / "file.json") << "{}";
    begin(dialogs.fileToRead());
    answer((directory / "file.json").string());
    ASSERT_TRUE(over());
    EXPECT_EQ(job->result(), directory / "file.json");

    begin(dialogs.fileToRead());
    ASSERT_TRUE(until([] { return open<QFileDialog>() != nullptr; }));
    EXPECT_EQ(open<QFileDialog>()->directory().absolutePath().toStdString(), directory.path());
    QTest::keyClick(open<QFileDialog>(), Qt::Key_Escape);
    ASSERT_TRUE(over());
    EXPECT_EQ(job->result(), std::nullopt);
}

TEST_F(FileDialogsTest, ATaskThatGoesTakesItsDialogWithIt) {
    for (const bool cancelled : {true, false}) {
        begin(dialogs.fileToWrite("Work"));
        ASSERT_TRUE(until([] { return open<QFileDialog>() != nullptr; }));
        if (cancelled) {
            job->cancel();
            ASSERT_TRUE(over());
            EXPECT_TRUE(job->outcome().isCancelled());
        } else {
            job.reset();
        }
        EXPECT_FALSE(open<QFileDialog>());
    }
}

}  // namespace
}  // namespace quillo
