#pragma once

#include <QTranslator>

namespace Orvane::ConsoleHost {

/// Translates the model's texts, which the console's labels show, into a language that the host knows
/// itself. Texts it does not know stay as they are.
class ModelTranslator : public QTranslator {
    Q_OBJECT

public:
    /// Languages there are; "en" is the texts' own.
    static QStringList languages();

    explicit ModelTranslator(const QString& language, QObject* parent = nullptr);

    bool isEmpty() const override;
    QString translate(
        const char* context, const char* sourceText, const char* disambiguation, int n) const override;

private:
    const QString m_strLanguage;
};

} // namespace Orvane::ConsoleHost
