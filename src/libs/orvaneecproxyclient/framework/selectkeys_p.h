#pragma once

#include "ecconstants.h"

#include <QList>

#include <memory>
#include <mutex>

namespace Orvane::EC {
struct s_ECButtonConfig;
struct s_ECCommandConfig;
} // namespace Orvane::EC

namespace Orvane::ECProxy::Client {

class ECCommandItem;

namespace Internal {

/// The selectable keys of a group (screens, layers, inputs, presets, digits), in the order of their place
/// on a page. Set when the configuration arrives, read by key handlers and notifications on any thread.
class SelectKeys {
public:
    using Buttons = QList<std::weak_ptr<EC::s_ECButtonConfig>>;

    /// Takes all keys of `config` with that function code; none for an empty configuration.
    void collect(const std::shared_ptr<EC::s_ECCommandConfig>& config, quint16 orvaneKey);

    /// Takes all keys of `config` that have a function code.
    void collectFunctions(const std::shared_ptr<EC::s_ECCommandConfig>& config);

    Buttons buttons() const;
    int count() const;
    /// Empty when `index` is out of range or the configuration is gone.
    std::shared_ptr<EC::s_ECButtonConfig> at(int index) const;

    /// One unbound item for each key on each of `pageCount` pages: page by page, by order index within a
    /// page.
    QList<std::shared_ptr<ECCommandItem>> makeItems(int pageCount) const;

private:
    void set(QList<std::shared_ptr<EC::s_ECButtonConfig>> found);

    // m_mutex guards m_buttons.
    mutable std::mutex m_mutex;
    Buttons m_buttons;
};

/// The button index of the first item that nothing is bound to, for keys that bind one object each, and its
/// place on its page in `orderIndex`; -1 when every item is taken.
int minUnusedButtonIndex(const QList<std::shared_ptr<ECCommandItem>>& items, int pageSize, int& orderIndex);

} // namespace Internal

} // namespace Orvane::ECProxy::Client
