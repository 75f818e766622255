// The Qt menu bar: one QAction per model item, its enabling asked of the command
// rules just before it can be chosen.
#include "prefs/lv_menubar_qt.h"

#include <map>
#include <vector>

#include <QApplication>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPointer>
#include <QPrinter>
#include <QUrl>

#include "shell/ks_commands.h"

namespace
{

const char *const kTitleProperty = "lumivexTitle";
const char *const kActionProperty = "lumivexAction";
const char *const kTagProperty = "lumivexTag";

// The desktop's part of the commands, done with Qt.
class QtDesktopCommands : public LVDesktopCommands
{
  public:
    QPointer<QMainWindow> window;

    void showAboutPanel(const std::string &name, const std::string &version, const std::string &credits) override
    {
        const QString text = QStringLiteral("<h3>%1</h3><p>Version %2</p>")
                                 .arg(QString::fromUtf8(name.c_str()).toHtmlEscaped(),
                                      QString::fromUtf8(version.c_str()).toHtmlEscaped());
        const QString credit = QString::fromUtf8(credits.c_str()).toHtmlEscaped().replace('\n', "<br>");
        QMessageBox::about(window, QStringLiteral("About %1").arg(QString::fromUtf8(name.c_str())),
                           text + QStringLiteral("<p align=\"center\">%1</p>").arg(credit));
    }
    void openURL(const std::string &url) override { QDesktopServices::openUrl(QUrl(QString::fromUtf8(url.c_str()))); }
    void hideApplication() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->isWindow()) widget->showMinimized();
    }
    // A Linux desktop has no notion of hiding other programs' windows.
    void hideOtherApplications() override {}
    void showAllApplications() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->isMinimized()) widget->showNormal();
    }
    void runPageSetup() override
    {
        // Kept for the whole run, as the page layout is the application's.
        if (!printer) printer = new QPrinter;
        QPageSetupDialog dialog(printer, window);
        dialog.exec();
    }

  private:
    QPrinter *printer = nullptr;
};

// Re-evaluates the enabling just before Qt looks up a Ctrl/Command shortcut, as a
// menu bar validates its items before a key equivalent.
class ShortcutWatcher : public QObject
{
  public:
    using QObject::QObject;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ShortcutOverride) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (key->modifiers() & Qt::ControlModifier) KSRevalidateMenus();
        }
        return false;
    }
};

struct MenuBarState {
    QPointer<QMenuBar> bar;
    std::vector<QPointer<QAction>> actions; // every action with a command
    QPointer<QMenu> openRecent;
    std::map<KSMenuMark, QPointer<QAction>> marked;
    QPointer<ShortcutWatcher> watcher; // a child of the menu bar
};

MenuBarState pState;
QtDesktopCommands pQtDesktopCommands;

QString MenuText(const std::string &title)
{
    return QString::fromUtf8(title.c_str()).replace('&', "&&");
}

// One character with Ctrl (Command on macOS); an upper-case letter adds Shift.
QKeySequence KeySequence(const std::string &key)
{
    const QString text = QString::fromUtf8(key.c_str());
    if (text.isEmpty()) return QKeySequence();
    const QChar c = text.at(0);
    Qt::KeyboardModifiers modifiers = Qt::ControlModifier;
    if (c.isLetter() && c.isUpper()) modifiers |= Qt::ShiftModifier;
    return QKeySequence(QKeyCombination(modifiers, Qt::Key(c.toUpper().unicode())));
}

void Validate(QAction *action)
{
    const QVariant command = action->property(kActionProperty);
    if (!command.isValid()) return;
    action->setEnabled(KSValidateMenuItem((KSMenuAction)command.toInt(), action->property(kTagProperty).toUInt()));
}

void Remember(QAction *action, const KSMenuNode &node)
{
    action->setProperty(kTitleProperty, QString::fromUtf8(node.title.c_str()));
    if (node.mark != KSMenuMark::None && node.mark != KSMenuMark::WebLinks) pState.marked[node.mark] = action;
}

QMenu *AddMenu(QWidget *parent, const KSMenuNode &node);

void AddItems(QMenu *menu, const std::vector<KSMenuNode> &nodes)
{
    for (const KSMenuNode &node : nodes) {
        switch (node.kind) {
        case KSMenuNode::Kind::Separator:
            menu->addSeparator();
            break;
        case KSMenuNode::Kind::Submenu:
            menu->addMenu(AddMenu(menu, node));
            break;
        case KSMenuNode::Kind::Item: {
#if defined(Q_OS_MACOS)
            // The system's application menu has its own.
            if (node.action == KSMenuAction::Hide || node.action == KSMenuAction::HideOthers ||
                node.action == KSMenuAction::ShowAll)
                break;
#endif
            QAction *action = menu->addAction(MenuText(node.title));
            action->setShortcut(KeySequence(node.key));
            switch (node.action) {
            case KSMenuAction::About:
                action->setMenuRole(QAction::AboutRole);
                break;
            case KSMenuAction::Preferences:
                action->setMenuRole(QAction::PreferencesRole);
                break;
            case KSMenuAction::Terminate:
                action->setMenuRole(QAction::QuitRole);
                break;
            default:
                action->setMenuRole(QAction::NoRole);
                break;
            }
            action->setProperty(kActionProperty, (int)node.action);
            action->setProperty(kTagProperty, node.tag);
            Remember(action, node);
            const KSMenuAction command = node.action;
            const uint32_t tag = node.tag;
            QObject::connect(action, &QAction::triggered, action, [command, tag] {
                if (KSValidateMenuItem(command, tag)) KSPerformMenuAction(command, tag);
            });
            pState.actions.push_back(action);
            break;
        }
        }
    }
}

QMenu *AddMenu(QWidget *parent, const KSMenuNode &node)
{
    auto *menu = new QMenu(MenuText(node.title), parent);
    Remember(menu->menuAction(), node);
    if (node.mark == KSMenuMark::OpenRecent) pState.openRecent = menu;
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu] {
        for (QAction *action : menu->actions())
            Validate(action);
    });
    AddItems(menu, node.children);
    return menu;
}

void RetitleMarkedAction(KSMenuMark mark, const char *title)
{
    auto found = pState.marked.find(mark);
    if (found == pState.marked.end() || !found->second) return;
    found->second->setText(MenuText(title));
    found->second->setProperty(kTitleProperty, QString::fromUtf8(title));
}

QAction *FindByTitle(const QList<QAction *> &actions, const QString &title)
{
    for (QAction *action : actions) {
        if (action->property(kTitleProperty).toString() == title) return action;
        if (QMenu *menu = action->menu())
            if (QAction *found = FindByTitle(menu->actions(), title)) return found;
    }
    return nullptr;
}

} // namespace

QMenuBar *KSInstallQtMenuBar(QMainWindow *window)
{
    if (KSMenuBarModel().menus.empty()) KSBuildMenuBar();
    KSForgetQtMenuBar();
    if (!KSDesktopCommandsSet()) {
        pQtDesktopCommands.window = window;
        KSSetDesktopCommands(&pQtDesktopCommands);
    } else if (KSDesktopCommands() == &pQtDesktopCommands) {
        pQtDesktopCommands.window = window;
    }

    auto *bar = new QMenuBar(window);
    pState.bar = bar;
    for (const KSMenuNode &node : KSMenuBarModel().menus)
        bar->addMenu(AddMenu(bar, node));
    window->setMenuBar(bar);

    KSSetMenuTitleObserver(RetitleMarkedAction);
    pState.watcher = new ShortcutWatcher(bar);
    if (qApp) qApp->installEventFilter(pState.watcher);
    return bar;
}

void KSRevalidateMenus()
{
    for (const QPointer<QAction> &action : pState.actions)
        if (action) Validate(action);
}

QMenu *KSOpenRecentMenu()
{
    return pState.openRecent;
}

QAction *KSMarkedMenuAction(KSMenuMark mark)
{
    auto found = pState.marked.find(mark);
    return found == pState.marked.end() ? nullptr : found->second.data();
}

QAction *KSFindMenuAction(const QString &title)
{
    if (!pState.bar) return nullptr;
    return FindByTitle(pState.bar->actions(), title);
}

void KSForgetQtMenuBar()
{
    KSSetMenuTitleObserver(nullptr);
    delete pState.watcher.data();
    pState.watcher = nullptr;
    pState.actions.clear();
    pState.marked.clear();
    pState.openRecent = nullptr;
    pState.bar = nullptr;
}
