#include "app/gui/FileDialogs.hpp"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

namespace quillo {
namespace {

/// Shown for `parent`, which is a window of Quick: widgets know no parents of that kind.
template <class Dialog>
void showFor(Dialog& dialog, QWindow* parent) {
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.winId();  // makes its window
    dialog.windowHandle()->setTransientParent(parent);
    dialog.show();
}

Task<int> answer(QDialog& dialog, QWindow* parent) {
    const Context context = co_await quillo::context();
    Completion<int> finished(*context.executor);
    QObject::connect(
        &dialog, &QDialog::finished, &dialog,
        [setter = finished.setter()](int result) { setter.set(result); }, Qt::SingleShotConnection);
    showFor(dialog, parent);
    co_return co_await finished;
}

Task<bool> mayReplace(QString name, QWindow* parent) {
    QMessageBox question(QMessageBox::NoIcon, "Quillo",
                         QStringLiteral("“%1” already exists. Do you want to replace it?").arg(name));
    question.setTextFormat(Qt::PlainText);
    question.setInformativeText("Replacing it overwrites its current contents.");
    QPushButton* const replace = question.addButton("Replace", QMessageBox::DestructiveRole);
    question.setDefaultButton(question.addButton(QMessageBox::Cancel));
    co_await answer(question, parent);
    co_return question.clickedButton() == replace;
}

QString startDirectory(const QString& last) {
    if (!last.isEmpty() && QDir(last).exists()) return last;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents).exists() ? documents : QDir::homePath();
}

void prepare(QFileDialog& dialog, const QString& title, const QString& directory) {
    dialog.setWindowTitle(title);
    dialog.setDirectory(startDirectory(directory));
    dialog.setNameFilters({"Workspaces (*.json)", "All files (*)"});
    // Qt's own questions, about replacing and about files that are not there, would run a loop of their own.
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
}

std::filesystem::path absolutePath(const QString& file) {
    return std::filesystem::path(QFile::encodeName(QFileInfo(file).absoluteFilePath()).toStdString());
}

}  // namespace

Task<FileDialogs::File> FileDialogs::fileToWrite(std::string proposedName) {
    QFileDialog dialog;
    prepare(dialog, "Export Workspace", directory_);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("json");
    dialog.selectFile(QString::fromStdString(proposedName));
    for (;;) {
        if (co_await answer(dialog, parent_()) != QDialog::Accepted) co_return std::nullopt;
        const QFileInfo chosen(dialog.selectedFiles().value(0));
        directory_ = chosen.absolutePath();
        if (!chosen.exists() || co_await mayReplace(chosen.fileName(), parent_())) {
            co_return absolutePath(chosen.filePath());
        }
    }
}

Task<FileDialogs::File> FileDialogs::fileToRead() {
    QFileDialog dialog;
    prepare(dialog, "Import Workspace", directory_);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (co_await answer(dialog, parent_()) != QDialog::Accepted) co_return std::nullopt;
    const QString chosen = dialog.selectedFiles().value(0);
    directory_ = QFileInfo(chosen).absolutePath();
    co_return absolutePath(chosen);
}

Task<FileDialogs::File> FileDialogs::folderToWrite() {
    QFileDialog dialog;
    prepare(dialog, "Export Workspaces", directory_);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::Accept, "Export Here");
    if (co_await answer(dialog, parent_()) != QDialog::Accepted) co_return std::nullopt;
    directory_ = dialog.selectedFiles().value(0);
    co_return absolutePath(directory_);
}

}  // namespace quillo
