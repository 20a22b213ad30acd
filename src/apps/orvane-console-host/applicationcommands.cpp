#include "applicationcommands.h"

#include "commandtable.h"
#include "dvisignals.h"
#include "ecconstants.h"
#include "ecmanager.h"
#include "hostdialog.h"
#include "languages.h"
#include "noticepresenter.h"
#include "typingfield.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QPointer>

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECManager;
using Notices::NoticePresenter;
namespace Constants = ECProxy::Client::Constants;

namespace {

/// The one dialog that commands open.
class DialogCommands {
public:
    explicit DialogCommands(const ApplicationParts& parts)
        : m_parts(parts)
    {
    }

    Answer open()
    {
        if (m_pDialog)
            return Answer::refused(QStringLiteral("the dialog is open already"));
        m_pDialog = new HostDialog(m_parts.events, m_parts.field.window());
        m_pDialog->open();
        m_parts.events.writeEvent(QStringLiteral("dialogOpened"));
        return Answer::done();
    }

    Answer close(bool accept)
    {
        if (!m_pDialog)
            return Answer::refused(QStringLiteral("the dialog is not open"));
        m_pDialog->done(accept ? QDialog::Accepted : QDialog::Rejected);
        return Answer::done();
    }

private:
    const ApplicationParts m_parts;
    QPointer<HostDialog> m_pDialog;
};

Answer focusOn(const QString& name)
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (widget->objectName() != name || widget->focusPolicy() == Qt::NoFocus)
            continue;
        widget->setFocus();
        return Answer::done();
    }
    return Answer::refused(QStringLiteral("there is no widget \"%1\" that takes the focus").arg(name));
}

Answer setLanguage(const QString& language)
{
    if (!Languages::use(language))
        return Answer::refused(QStringLiteral("there is no such language"));
    ECManager::instance()->retranslateUi();
    return Answer::done();
}

constexpr qint64 LargestSide = 16384;

QStringList windowNames()
{
    return {
        QStringLiteral("host"), QStringLiteral("console"), QStringLiteral("explainer"),
        QStringLiteral("surface")};
}

Answer takeScreenshot(QWidget* window, const QString& path)
{
    if (!window)
        return Answer::refused(QStringLiteral("there is no window"));
    QPixmap picture = window->grab();
    QPainter painter(&picture);
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* dialog : widgets) {
        const bool liesOver = dialog->parentWidget() && dialog->parentWidget()->window() == window;
        if (liesOver && dialog->isVisible() && dialog->isModal())
            painter.drawPixmap(dialog->pos() - window->pos(), dialog->grab());
    }
    painter.end();
    if (!picture.save(path))
        return Answer::refused(QStringLiteral("the picture cannot be written to ") + path);
    return Answer::done();
}

/// The buttons by name.
const QMap<QString, QMessageBox::StandardButton>& messageBoxButtons()
{
    static const QMap<QString, QMessageBox::StandardButton> buttons = {
        {QStringLiteral("yes"), QMessageBox::Yes},
        {QStringLiteral("no"), QMessageBox::No},
        {QStringLiteral("ok"), QMessageBox::Ok}};
    return buttons;
}

Answer answerMessageBox(NoticePresenter& notices, const QString& button)
{
    return Answer::of(notices.answer(messageBoxButtons().value(button)));
}

/// Page that each group of keys shows, from 0.
QJsonObject pages()
{
    QJsonObject object;
    for (const char* group : {"ScreenCommand", "LayerCommand", "InputCommand", "PresetCommand"})
        object.insert(QLatin1String(group), ECManager::instance()->page(group));
    return object;
}

QJsonObject tellState(const TypingField& field, const DviSignals& dviSignals)
{
    const ECManager* const manager = ECManager::instance();
    const QWidget* const focus = QApplication::focusWidget();
    return {
        {QStringLiteral("field"), field.text()},
        {QStringLiteral("focus"), focus ? focus->objectName() : QString()},
        {QStringLiteral("modal"), QApplication::activeModalWidget() != nullptr},
        {QStringLiteral("quenor"), qApp->property(Constants::QuenorProperty).toBool()},
        {QStringLiteral("keypadLocked"), manager->isLockedKeypad()},
        {QStringLiteral("tbarLocked"), manager->isLockedTBar()},
        {QStringLiteral("virtualConsole"), manager->getVirtualConsoleMode()},
        {QStringLiteral("source"), int(manager->getCurrentSource())},
        {QStringLiteral("pages"), pages()},
        {QStringLiteral("dviSignals"), dviSignals.toJson()}};
}

} // namespace

void addApplicationCommands(CommandTable& table, const ApplicationParts& parts)
{
    const auto dialog = std::make_shared<DialogCommands>(parts);
    table.add("openDialog", "opens a modal dialog with a text and a number", {}, [dialog] {
        return dialog->open();
    });
    table.add(
        "closeDialog", "closes it", {Parameter::flag("accept").orElse(false)},
        [dialog](const Arguments& arguments) { return dialog->close(arguments.flag("accept")); });
    table.add(
        "answerMessageBox", "presses a button of the message box that is shown",
        {Parameter::choice("button", messageBoxButtons().keys())},
        [notices = &parts.notices](const Arguments& arguments) {
            return answerMessageBox(*notices, arguments.text("button"));
        });
    table.add(
        "focus", "moves the focus to the widget with a name", {Parameter::text("widget")},
        [](const Arguments& arguments) { return focusOn(arguments.text("widget")); });
    table.add(
        "setQuenor", "sets the property that makes the console ignore most keys", {Parameter::flag("on")},
        [](const Arguments& arguments) {
            qApp->setProperty(Constants::QuenorProperty, arguments.flag("on"));
        });
    table.add(
        "setLanguage", "changes the language of the labels and notices",
        {Parameter::choice("language", Languages::names())},
        [](const Arguments& arguments) { return setLanguage(arguments.text("language")); });
    table.add(
        "screenshot", "writes a picture of a window, of the host's with its dialogs",
        {Parameter::text("file"), Parameter::choice("window", windowNames()).orElse(windowNames().first())},
        [windows = parts.windows](const Arguments& arguments) {
            return takeScreenshot(windows.value(arguments.text("window")), arguments.text("file"));
        });
    table.add(
        "showConsole", "shows or hides the on-screen console",
        {Parameter::flag("visible"), Parameter::integer("width", 0, LargestSide).orElse(0),
         Parameter::integer("height", 0, LargestSide).orElse(0)},
        [console = &parts.console](const Arguments& arguments) {
            if (arguments.integer("width") > 0 && arguments.integer("height") > 0)
                console->resize(arguments.integer("width"), arguments.integer("height"));
            console->setVisible(arguments.flag("visible"));
        });
    table.add(
        "state", "tells what the host knows of itself and the console", {},
        [field = &parts.field, dviSignals = &parts.dviSignals] { return tellState(*field, *dviSignals); });
    // After the answer to this command.
    table.add("quit", "ends the host", {}, [] {
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
}

} // namespace Orvane::ConsoleHost
