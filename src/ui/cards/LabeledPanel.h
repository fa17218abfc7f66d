#pragma once

#include <QWidget>

/// A framed area under a title band.
class CLabeledPanel : public QWidget {
    Q_OBJECT

public:
    explicit CLabeledPanel(const QString& title, QWidget* parent = nullptr);

    void SetTitle(const QString& title);
    const QString& Title() const { return m_title; }

    /// In pixels from the upper edge.
    int TitleBandHeight() const { return m_titleBandHeight; }

protected:
    void paintEvent(QPaintEvent* event) override;

    /// What of the band the title may fill; all of it here.
    virtual QRect TitleRect() const;
    QRect BandRect() const { return {0, 0, width(), m_titleBandHeight}; }
    QRect BodyRect() const;

private:
    QString m_title;
    int m_titleBandHeight = 36;
};
