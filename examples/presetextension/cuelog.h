#pragma once

#include <orvaneecproxyclient/ipresetcommandex.h>

#include <QStringList>

/// A preset extension that keeps the log of a show: which presets were recalled, when they were taken, and
/// how.
///
/// Make it on the GUI thread after `ECManager::init()`, attach it, and delete it there when the log is
/// closed.
class CueLog : public Orvane::ECProxy::Client::IPresetCommandEx {
    Q_OBJECT

public:
    using IPresetCommandEx::IPresetCommandEx;

    /// Begins to listen to the console. False when there is no console yet. Call it once.
    bool attach();

    QStringList cues() const { return m_cues; }

    QString name() const override;
    int pageSize() const override;

    bool selectPresetPressed(const quint32& ecKey) override;
    bool clearPresetsPressed() override;
    bool takePressed(const quint32& ecKey) override;
    bool cutPressed(const quint32& ecKey) override;
    void ecTBarChanged(const Orvane::ECProxy::Client::ECTBarValue& value) override;

Q_SIGNALS:
    void signalCue(QString cue);

private:
    bool note(const QString& cue);

    QStringList m_cues;
};
