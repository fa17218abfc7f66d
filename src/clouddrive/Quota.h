#pragma once

#include "lanes/PageLoader.h"
#include "service/AccountQuota.h"

#include <QDialog>

class QLabel;
struct Console;

/// What the home storage may hold and holds. Its fields stay empty where the service does not tell.
class CQuota : public QDialog {
    Q_OBJECT

public:
    /// Shows it over the parent's window; it deletes itself when it is closed.
    static void Open(const Console& console, QWidget* parent);

private:
    CQuota(const Console& console, QWidget* parent);

    void Show(const QuotaTexts& texts);

    QLabel* m_total;
    QLabel* m_used;
    QLabel* m_available;
    PageLoader m_loader;
};
