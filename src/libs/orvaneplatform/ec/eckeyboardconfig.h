#pragma once

#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <memory>

/// Says which key of the console does what. Built once (see `eckeyboardloader.h`) and only read after that,
/// so any thread may read it.
namespace Orvane::EC {

/// Answer of the lookups that yield a key number when no key fits.
constexpr quint32 InvalidECKey = 0xFFFFFFFF;

/// A small text display on the console.
struct s_ECOledConfig {
    /// The display's number on the console. Displays and keys are numbered separately.
    quint16 ECKey = 0;
    /// The display's number in the application, sent along with its text.
    quint32 OrvaneECKey = 0;
};

/// A key of the console.
struct s_ECButtonConfig {
    /// The key's number on the console, reported when it is pressed or released.
    quint16 ECKey = 0;
    /// The key's number in the application, sent along with its colour.
    quint32 OrvaneECKey = 0;
    /// What the key does: a code of its group's callback types. 0 is a key without a function.
    quint16 OrvaneKey = 0;
    /// Place among the group's select keys, from 0; of a digit key the digit.
    quint16 OrderIndex = 0;
    /// The display that belongs to the key; empty when it has none.
    std::shared_ptr<s_ECOledConfig> pECOledCfg;
};

/// A group of keys that one command serves. All lookups go through the keys in the order of the
/// configuration, and the first that fits wins.
struct ORVANEPLATFORM_EXPORT s_ECCommandConfig {
    /// The command's name, letter for letter.
    QString Name;
    /// The keys, in the order of the configuration.
    QList<std::shared_ptr<s_ECButtonConfig>> m_buttons;

    /// The first key, or all keys, with the number or function code; empty when there is none.
    /// @{
    std::shared_ptr<s_ECButtonConfig> findECButtonConfigByECKey(const quint32& ecKey) const;
    std::shared_ptr<s_ECButtonConfig> findECButtonConfigByOrvaneKey(const quint16& orvaneKey) const;
    QList<std::shared_ptr<s_ECButtonConfig>> findECButtonConfigsByOrvaneKey(const quint16& orvaneKey) const;
    QList<std::shared_ptr<s_ECButtonConfig>> findECButtonConfigsByOrvaneECKey(
        const quint16& orvaneECKey) const;
    /// @}
    /// The display with the number @p ecKey or, when there is none, that of the key with this number: the
    /// number of a page label and the number of a labelled key both find their display.
    std::shared_ptr<s_ECOledConfig> findECOledConfigByECKey(const quint32& ecKey) const;
    /// The console's number of the key with the application's number; `InvalidECKey` when there is none.
    quint32 getECKeyByOrvaneECKey(const quint16& orvaneECKey) const;
    /// The console's number of the key at the place; `InvalidECKey` when there is none.
    quint32 getECKeyByOrderIndex(quint16 orderIndex) const;
};

/// A whole console.
struct s_ECKeyboardConfig {
    /// As the application shows it.
    QString Name;
    /// The application's picture of it.
    QString IconName;
    /// Model of the console.
    quint16 ModelId = 0;
    /// Its groups of keys.
    QList<std::shared_ptr<s_ECCommandConfig>> m_commands;
};

} // namespace Orvane::EC
