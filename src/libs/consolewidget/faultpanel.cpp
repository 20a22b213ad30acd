#include "faultpanel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

namespace Orvane::ConsolePanel {

namespace {

constexpr int HighestRate = 100;
constexpr int LongestDelayMs = 10000;

QPushButton* createButton(const QString& text, const char* name)
{
    auto* const button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::NoFocus); // the keyboard stays with the console's keys
    return button;
}

} // namespace

FaultPanel::FaultPanel(FaultyWire& wire, QWidget* parent)
    : QWidget(parent)
    , m_wire(wire)
{
    setObjectName(QStringLiteral("faults"));
    const QString percent = QStringLiteral(" %");
    auto* const form = new QFormLayout;
    form->setVerticalSpacing(2);
    form->addRow(
        QStringLiteral("Drop"), createNumber("dropRate", &WireFaults::dropRate, percent, HighestRate));
    form->addRow(
        QStringLiteral("Duplicate"),
        createNumber("duplicateRate", &WireFaults::duplicateRate, percent, HighestRate));
    form->addRow(
        QStringLiteral("Reorder"),
        createNumber("reorderRate", &WireFaults::reorderRate, percent, HighestRate));
    m_pDelay = new QSpinBox;
    m_pDelay->setObjectName(QStringLiteral("delayMs"));
    m_pDelay->setRange(0, LongestDelayMs);
    m_pDelay->setSuffix(QStringLiteral(" ms"));
    m_pDelay->setFocusPolicy(Qt::ClickFocus);
    connect(m_pDelay, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int ms) {
        m_wire.faults().delay = std::chrono::milliseconds(ms);
    });
    auto* const delay = new QHBoxLayout;
    delay->addWidget(createNumber("delayRate", &WireFaults::delayRate, percent, HighestRate));
    delay->addWidget(m_pDelay);
    form->addRow(QStringLiteral("Delay"), delay);

    auto* const lose = createButton(QStringLiteral("Lose the next release"), "loseRelease");
    connect(lose, &QPushButton::clicked, this, [this] { m_wire.faults().losesNextRelease = true; });
    auto* const restart = createButton(QStringLiteral("Restart console"), "restartConsole");
    connect(restart, &QPushButton::clicked, this, &FaultPanel::signalRestartConsole);
    auto* const kind = new QComboBox;
    kind->addItems(malformedKinds());
    kind->setFocusPolicy(Qt::NoFocus);
    auto* const send = createButton(QStringLiteral("Send malformed"), "sendMalformed");
    connect(send, &QPushButton::clicked, this, [this, kind] {
        Q_EMIT signalSendBytes(malformedDatagram(kind->currentIndex()));
    });
    auto* const malformed = new QHBoxLayout;
    malformed->addWidget(kind);
    malformed->addWidget(send, 1);

    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 2, 4, 4);
    rows->setSpacing(2);
    rows->addLayout(form);
    rows->addWidget(lose);
    rows->addLayout(malformed);
    rows->addWidget(restart);
    rows->addStretch(1);
    refresh();
}

void FaultPanel::refresh()
{
    for (const Number& number : m_numbers) {
        const QSignalBlocker blocker(number.box);
        number.box->setValue(m_wire.faults().*number.rate);
    }
    const QSignalBlocker blocker(m_pDelay);
    m_pDelay->setValue(int(m_wire.faults().delay.count()));
}

QSpinBox* FaultPanel::createNumber(
    const char* name, int WireFaults::*rate, const QString& suffix, int highest)
{
    auto* const box = new QSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setRange(0, highest);
    box->setSuffix(suffix);
    box->setFocusPolicy(Qt::ClickFocus);
    connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, [this, rate](int value) {
        m_wire.faults().*rate = value;
    });
    m_numbers.push_back({box, rate});
    return box;
}

} // namespace Orvane::ConsolePanel
