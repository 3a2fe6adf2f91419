#pragma once

#include <QVector>
#include <QWidget>

class CircleBtn;
class QLabel;

/**
 * What the bars under pictures and pages have in common: round buttons described by a table, labels in the theme's
 * colours, the zoom in percent. A bar builds its own row of them.
 *
 * Owner: the widget that shows the picture; it places the bar and connects its buttons.
 */
class PreviewToolBar : public QWidget {
    Q_OBJECT

public:
    struct ButtonRow {
        const char *pNormalIcon;
        const char *pSelectedIcon;
        const char *pLabel;
        const char *pLabelWithKey; ///< Null for a button without a shortcut.
        int nShortcutId;
    };

    static constexpr int BarHeight = 50;

    /** Shows the zoom. */
    void setPercent(int nPercent);
    /** Off while an animation runs. */
    void setButtonsEnabled(bool bEnabled);
    /** Asks the host's shortcut setting for the keys that the tool tips name. */
    void updateToolTips();

protected:
    /** The rows outlive the bar; their labels are translated in the context. */
    PreviewToolBar(const ButtonRow *pRows, int nRows, const char *pContext, const QSize &percentSize, QWidget *pParent);

    CircleBtn *buttonAt(int nRow) const { return m_buttons.at(nRow); }
    QLabel *percentLabel() const { return m_percentLabel; }
    /** A label that follows the theme. */
    QLabel *addLabel(const QSize &size, const QString &text);

private:
    void applyStyle();

    const ButtonRow *m_pRows;
    const char *m_pContext;
    QVector<CircleBtn *> m_buttons;
    QVector<QLabel *> m_labels;
    QLabel *m_percentLabel;
};
