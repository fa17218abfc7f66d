#include "development/Silences.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Every place that stays although the sweep reports it.
std::vector<Silence> AllSilences() {
    return {
        {SweepRule::Overlap, "*", "*/PageHead 'pageHead'/*Notice*",
         "the yellow line lies over the status text, so that nothing below it moves"},
        {SweepRule::TabOrder, "gallery-trees", "*",
         "two trees stand beside each other, each with a field of its own"},
        {SweepRule::Focus, "gallery-fields", "*",
         "the samples of the focused state show their ring all the time"},
        {SweepRule::Default, "dialog-folder-picker", "*'OK'", "OK waits for a folder to be selected"},
    };
}

bool Fits(const char* wildcards, const QString& text) {
    const QString pattern = QRegularExpression::escape(QString::fromLatin1(wildcards));
    const QString any = QString(pattern).replace(u"\\*"_s, u".*"_s);
    return QRegularExpression(QRegularExpression::anchoredPattern(any)).match(text).hasMatch();
}

} // namespace

SilenceBook::SilenceBook() : SilenceBook(AllSilences()) {}

SilenceBook::SilenceBook(std::vector<Silence> silences)
    : m_silences(std::move(silences)), m_used(m_silences.size()) {}

std::vector<ViewFind> SilenceBook::Loud(const std::vector<ViewFind>& finds) {
    std::vector<ViewFind> loud;
    std::copy_if(finds.begin(), finds.end(), std::back_inserter(loud),
                 [this](const ViewFind& found) { return !IsSilenced(found); });
    return loud;
}

bool SilenceBook::IsSilenced(const ViewFind& found) {
    bool silenced = false;
    for (std::size_t index = 0; index < m_silences.size(); ++index) {
        const Silence& silence = m_silences[index];
        if (silence.rule == found.find.rule && Fits(silence.view, found.view) &&
            Fits(silence.path, found.find.path)) {
            m_used[index] = true;
            silenced = true;
        }
    }
    return silenced;
}

QStringList SilenceBook::Unused() const {
    QStringList unused;
    for (std::size_t index = 0; index < m_silences.size(); ++index) {
        if (!m_used[index])
            unused.append(u"a silence matches nothing: %1 | %2 | %3"_s.arg(
                SweepRuleName(m_silences[index].rule), QString::fromLatin1(m_silences[index].view),
                QString::fromLatin1(m_silences[index].path)));
    }
    return unused;
}
