#pragma once

#include "lanes/PageLoader.h"
#include "service/Setting.h"

class QCheckBox;
class QLabel;
struct Console;

/// The box "Advanced Mode", whose state the service keeps. Beside it stands "not saved" as long as that is
/// so.
class ModeBox : public QWidget {
    Q_OBJECT

public:
    ModeBox(const Console& console, const Setting<int>& setting, QWidget* parent = nullptr);

    /// Reads the mode unless it is known: it was read, or chosen here. What the service does not tell stays
    /// simple, and is asked for by the next call.
    void Read();
    bool IsAdvanced() const;

signals:
    /// It was read as another one, or chosen.
    void Changed(bool advanced);
    /// The sentence says why the mode was not saved.
    void NotSaved(const QString& failure);
    /// After one that was not.
    void SavedAgain();

private:
    void Write(bool advanced);
    void EndWrite(const ServiceAnswer& answer);

    const ServiceClient& m_service;
    Setting<int> m_setting;
    QCheckBox* m_advanced;
    QLabel* m_unsaved;
    bool m_known = false;
    PageLoader m_loader;
};
