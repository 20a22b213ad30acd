#include "hostdialog.h"

#include "eventwriter.h"
#include "typingfield.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

#include <utility>

namespace Orvane::ConsoleHost {

HostDialog::HostDialog(EventWriter& events, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("dialog"));
    setWindowTitle(QStringLiteral("A modal dialog"));
    setModal(true);
    setAttribute(Qt::WA_DeleteOnClose);

    auto* text = new QLineEdit;
    text->setObjectName(QStringLiteral("dialogText"));
    text->setMaxLength(MaxFieldCharacters);
    reportTextChanges(*text, events);
    auto* number = new QSpinBox;
    number->setObjectName(QStringLiteral("dialogNumber"));
    number->setRange(0, 999);
    connect(
        number, &QSpinBox::textChanged, &events,
        [&events, last = number->text()](const QString& shown) mutable {
            // Enter tells the text anew, changed or not.
            if (std::exchange(last, shown) != shown)
                events.writeEvent(
                    QStringLiteral("field"),
                    {{QStringLiteral("name"), QStringLiteral("dialogNumber")},
                     {QStringLiteral("text"), shown}});
        });
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("&Text"), text);
    form->addRow(QStringLiteral("&Number"), number);
    form->addRow(buttons);

    connect(this, &QDialog::finished, &events, [this, text, number, &events](int result) {
        // Not every window system gives the focus back to where the dialog took it from.
        if (parentWidget())
            parentWidget()->activateWindow();
        events.writeEvent(
            QStringLiteral("dialogClosed"),
            {{QStringLiteral("accepted"), result == QDialog::Accepted},
             {QStringLiteral("text"), text->text()},
             {QStringLiteral("number"), number->value()}});
    });
}

} // namespace Orvane::ConsoleHost
