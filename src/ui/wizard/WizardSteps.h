#pragma once

#include "wizard/WizardTravel.h"

#include <QStringList>
#include <QWidget>

/// The column of a wizard's steps: which are done, the present one, those to come.
class WizardSteps : public QWidget {
    Q_OBJECT

public:
    explicit WizardSteps(const QString& caption, QWidget* parent = nullptr);

    struct Step {
        QString title;
        WizardTravel::Mark mark;

        bool operator==(const Step&) const = default;
    };
    /// Those that are left out are not shown.
    void SetSteps(std::vector<Step> steps);

    /// The first text that is not shown whole; empty when all are.
    QString CutText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<QRect> Bands() const;
    void PaintStep(QPainter& painter, const Step& step, const QRect& band) const;

    QString m_caption;
    std::vector<Step> m_steps;
};
