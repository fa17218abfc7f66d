#pragma once

#include "lanes/PageLoader.h"
#include "service/AccountQuota.h"

#include <QDialog>

class NoticeLine;
class QLabel;
struct Console;

/// What the home storage may hold and holds. Its fields stay empty where the service does not tell, and a
/// line says so.
class CQuota : public QDialog {
    Q_OBJECT

public:
    /// Shows it over the parent's window; it deletes itself when it is closed.
    static void Open(const Console& console, QWidget* parent);

private:
    CQuota(const Console& console, QWidget* parent);

    struct Facts {
        QuotaTexts texts;
        QString remark; ///< why they are empty
    };
    static Facts Read(const ServiceClient& service, std::stop_token stop);
    void Show(const Facts& facts);

    QLabel* m_total;
    QLabel* m_used;
    QLabel* m_available;
    PageLoader m_loader;
    NoticeLine* m_notice;
};
