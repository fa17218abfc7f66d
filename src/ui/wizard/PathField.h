#pragma once

#include "page/UserPrompts.h"

#include <QWidget>

class QLineEdit;

/// A path that can be typed, pasted, or picked by a button.
class PathField : public QWidget {
    Q_OBJECT

public:
    /// Asks for a path, given what stands in the field, and calls back with the one that was picked.
    using Picker = std::function<void(QWidget* over, const QString& path,
                                      std::function<void(std::optional<QString>)> answer)>;

    explicit PathField(Picker picker, QWidget* parent = nullptr);
    /// Picks from this computer. The prompts outlive the field.
    PathField(UserPrompts& prompts, const PickRequest& request, QWidget* parent = nullptr);

    QString Path() const;
    void SetPath(const QString& path);
    QLineEdit& Edit() const { return *m_edit; }

signals:
    void PathChanged(const QString& path);

protected:
    /// The line to type in is heard by the field's name.
    void showEvent(QShowEvent* event) override;

private:
    QLineEdit* m_edit;
};
