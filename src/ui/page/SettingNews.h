#pragma once

#include <QObject>

/// Tells whoever shows a setting of the service that it was written, so that it is read again. UI thread.
class SettingNews : public QObject {
    Q_OBJECT

signals:
    void Written(const QString& name, const QObject* writer);
};
