#pragma once

#include <QWidget>

namespace Orvane::ConsolePanel {

/// The bar of twelve lights beside the T-Bar.
class LightBar : public QWidget {
    Q_OBJECT

public:
    explicit LightBar(QWidget* parent = nullptr);

    /// @param level 0 to 12 lights
    /// @param fromBottom the end that the bar grows from
    void setLevel(int level, bool fromBottom);
    int level() const { return m_nLevel; }

    QSize sizeHint() const override { return {14, 160}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_nLevel = 0;
    bool m_bFromBottom = true;
};

} // namespace Orvane::ConsolePanel
