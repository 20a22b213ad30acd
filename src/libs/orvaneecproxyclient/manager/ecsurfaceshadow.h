#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QList>

#include <memory>
#include <optional>

namespace Orvane::ECProxy::Client {

namespace Internal {
class SentSurface;
class SurfaceRecord;
} // namespace Internal

/// What the console's keys are to show and what the console was told, side by side: for a light that is
/// wrong.
///
/// While it lives it notes each light and label that `ECManager` sends, on whatever thread that is; without
/// one a request costs one relaxed atomic load. Of what was sent before it was made it knows nothing: make it
/// before the keys are painted, or have them painted anew.
///
/// What is wanted is what a repaint would send; keys that are lit only while pressed are wanted off, those of
/// functions too. A key that is held therefore differs until it is released. Two threads that send for one
/// key at the same time may be noted the other way round.
///
/// Make, use and destroy it on the GUI thread.
class ORVANEECPROXYCLIENT_EXPORT ECSurfaceShadow {
public:
    /// A key's light.
    struct Key {
        quint16 ecKey = 0; ///< the console's number of the key
        std::optional<ECButtonColor> wanted; ///< empty when no repaint lights the key
        std::optional<ECButtonColor> sent; ///< last; empty when nothing was sent for it
        /// Whether the console was told another light than the wanted one. It is off until it was told any.
        bool differs() const;
    };
    /// A label; labels have numbers of their own.
    struct Label {
        quint16 ecKey = 0; ///< the console's number of the label
        std::optional<ECOLEDText> wanted; ///< empty when no repaint writes it
        std::optional<ECOLEDText> sent; ///< last; empty when nothing was sent for it
        /// As for a key; a label is empty until the console was told a text.
        bool differs() const;
    };
    /// All keys and labels that anything is known of.
    struct Surface {
        QList<Key> keys; ///< by number
        QList<Label> labels; ///< by number
    };

    /// Begins to note what is sent.
    ECSurfaceShadow();
    ~ECSurfaceShadow();
    ECSurfaceShadow(const ECSurfaceShadow&) = delete;
    ECSurfaceShadow& operator=(const ECSurfaceShadow&) = delete;

    /// The surface as it is now. Asks the model what the keys show, and sends nothing. Nothing is wanted
    /// without a manager or a keyboard.
    Surface surface() const;

private:
    static Internal::SurfaceRecord drawSurface();

    const std::unique_ptr<Internal::SentSurface> d;
};

} // namespace Orvane::ECProxy::Client
