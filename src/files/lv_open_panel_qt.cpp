// The file dialogs on the desktop: QFileDialog behind the panel seam. With a filter,
// Qt's own dialog is used so that files the filter rejects show disabled.
#include "files/lv_open_panel_qt.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHash>
#include <QSortFilterProxyModel>
#include <functional>
#include <memory>
#include <string>

#include "files/ks_file.h"
#include "shell/ks_main.h"
#include "shell/ks_panels.h"

namespace
{

using Filter = std::function<bool(const std::string &path)>;

// Judges each entry once per visit of the dialog: packages are disabled, ordinary
// folders enabled, files as the filter says.
class LVOpenFilterModel : public QSortFilterProxyModel
{
  public:
    explicit LVOpenFilterModel(Filter filter, QObject *parent)
        : QSortFilterProxyModel(parent), m_filter(std::move(filter))
    {
    }

    bool enables(const QString &path) const
    {
        auto known = m_verdicts.constFind(path);
        if (known != m_verdicts.constEnd()) return *known;
        const std::string utf8 = path.toStdString();
        const bool enabled = QFileInfo(path).isDir() ? !KSPathIsPackage(utf8) : m_filter(utf8);
        m_verdicts.insert(path, enabled);
        return enabled;
    }

    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        Qt::ItemFlags flags = QSortFilterProxyModel::flags(index);
        const auto *files = qobject_cast<const QFileSystemModel *>(sourceModel());
        if (!files || !index.isValid()) return flags;
        if (!enables(files->filePath(mapToSource(index)))) flags &= ~(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        return flags;
    }

  private:
    Filter m_filter;
    mutable QHash<QString, bool> m_verdicts;
};

// Refuses to accept a typed name that the filter rejects.
class LVOpenDialog : public QFileDialog
{
  public:
    LVOpenDialog(const QString &caption, Filter filter) : QFileDialog(nullptr, caption), m_filter(std::move(filter)) {}

    void accept() override
    {
        if (m_filter) {
            const QStringList chosen = selectedFiles();
            if (chosen.isEmpty()) return;
            const QFileInfo info(chosen.first());
            if (info.isFile() && !m_filter(chosen.first().toStdString())) return;
            if (info.isDir() && KSPathIsPackage(chosen.first().toStdString())) return;
        }
        QFileDialog::accept();
    }

  private:
    Filter m_filter;
};

// Frames are skipped while a panel runs, as under any modal dialog.
class ModalScope
{
  public:
    ModalScope() : m_was(gModalRunning) { gModalRunning = true; }
    ~ModalScope() { gModalRunning = m_was; }

  private:
    bool m_was;
};

class LVQtPanelPresenter : public LVPanelPresenter
{
  public:
    std::string runSavePanel(const KSSavePanelRequest &request) override
    {
        std::unique_ptr<QFileDialog> dialog(KSCreateSavePanel(request));
        ModalScope modal;
        if (dialog->exec() != QDialog::Accepted || dialog->selectedFiles().isEmpty()) return {};
        return dialog->selectedFiles().first().toStdString();
    }

    std::string runOpenPanel(const KSOpenPanelRequest &request) override
    {
        std::unique_ptr<QFileDialog> dialog(KSCreateOpenPanel(request));
        if (request.customise) request.customise(dialog.get());
        int result;
        {
            ModalScope modal;
            result = dialog->exec();
        }
        if (request.customise) request.customise(nullptr);
        if (result != QDialog::Accepted || dialog->selectedFiles().isEmpty()) return {};
        return dialog->selectedFiles().first().toStdString();
    }
};

} // namespace

QFileDialog *KSCreateSavePanel(const KSSavePanelRequest &request)
{
    auto *dialog = new QFileDialog(nullptr, QString::fromStdString(request.message));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    if (!request.allowedType.empty()) {
        const QString type = QString::fromStdString(request.allowedType);
        dialog->setDefaultSuffix(type);
        dialog->setNameFilter(QStringLiteral("*.") + type);
    }
    if (!request.proposedName.empty()) dialog->selectFile(QString::fromStdString(request.proposedName));
    return dialog;
}

QFileDialog *KSCreateOpenPanel(const KSOpenPanelRequest &request)
{
    auto *dialog = new LVOpenDialog(QString::fromStdString(request.message), request.filter);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::ReadOnly, true); // no folder creation from an open panel
    if (request.filter) {
        dialog->setOption(QFileDialog::DontUseNativeDialog, true);
        dialog->setProxyModel(new LVOpenFilterModel(request.filter, dialog));
    }
    return dialog;
}

void KSInstallQtPanelPresenter()
{
    static LVQtPanelPresenter presenter;
    KSSetPanelPresenter(&presenter);
}
