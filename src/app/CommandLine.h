#pragma once

#include <QString>
#include <QStringList>

/// The console's command line: the arguments after the program's name, in which a switch counts wherever it
/// stands, and our own development options ("--dev-NAME=VALUE"), which are no part of that text.
class CommandLine {
public:
    /// `arguments` begin with the program's name.
    explicit CommandLine(const QStringList& arguments);

    const QString& Text() const { return m_text; }
    bool Server() const { return Has(u"/server"); }
    bool RunAs() const { return Has(u"/runas"); }
    bool BackupWizard() const { return Has(u"/bwiz"); }
    bool EditHome() const { return Has(u"/edithome"); }
    bool Cloud() const { return Has(u"/cloud"); }

    /// The number right behind "/view:" by the leading-number rule; 0 without the switch or without digits.
    int InitialView() const;

    /// The folder that the tour of all pages writes its pictures to; empty without a tour.
    const QString& TourFolder() const { return m_tourFolder; }
    /// Whether the gallery of controls is listed among the sections.
    bool Gallery() const { return m_gallery; }
    /// The title of the section that shows first, which "/view:" cannot always say; empty for the usual one.
    const QString& FirstSection() const { return m_firstSection; }
    /// Whether the start tells its milestones and then ends, for the benchmark.
    bool ReportStart() const { return m_reportStart; }

    /// What the program prints, and then ends, when "--help" or "--version" stands among the arguments; empty
    /// without them. Needs no application.
    QString TextToPrint() const;

    /// The arguments for an elevated copy of this program, as they came.
    QStringList ElevatedArguments() const;

    /// Takes over what WithSurroundings has added. Before anything reads it.
    void ApplySurroundings() const;

private:
    bool Has(QStringView name) const { return m_text.contains(name); }
    bool TakeDevelopmentOption(const QString& argument);

    QStringList m_switches;
    QString m_text;
    QString m_home; ///< empty: as the environment says, also of the next
    QString m_port;
    QString m_tourFolder;
    QString m_firstSection;
    bool m_gallery = false;
    bool m_reportStart = false;
    bool m_help = false;
    bool m_version = false;
};

/// The arguments with the data folder and the service's port, which an elevated copy does not find in its
/// environment everywhere, and the folder made absolute, because the copy starts elsewhere.
QStringList WithSurroundings(const QStringList& arguments);
