#pragma once

#include <QString>
#include <QStringList>

/// What of a text the query of a request does not carry as it stands, as in "\"&\""; empty when it carries
/// all.
QStringList LostInQuery(const QString& text);

/// What of a name cannot stand in a request's own path; empty when it can.
QStringList LostInPath(const QString& name);

/// A sentence about what the unescaped query may not carry of the text as it stands; empty when it carries
/// all.
QString QueryRemark(const QString& text);
