#pragma once

#include "lanes/PageLoader.h"
#include "wizard/TreeWalk.h"

#include <QAbstractItemModel>

#include <map>

/// A tree whose levels are listed one by one on a lane, with boxes to tick or without. A listed level is
/// kept. While a level is listed its node says so, and its box can be ticked like any other; a failed one
/// holds a row that says why.
class CheckTreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Role { NoteRole = Qt::UserRole + 1, IsMessageRole, IsLeftOutRole };
    enum class Boxes { None, Checks };

    /// The level below a path (the keys down to it, none for the first level), in the order in which it is
    /// shown; nothing when it cannot be listed and there are no words for it. On the lane: it captures
    /// values.
    using Lister = std::function<std::optional<TreeLevel>(const QStringList& path, std::stop_token stop)>;

    /// `page` is where the tree is shown; it and the reader outlive the model.
    CheckTreeModel(Reader& reader, QWidget& page, Lane lane, Lister lister, Boxes boxes = Boxes::Checks);
    ~CheckTreeModel() override;

    /// Lists the level below, unless that is done or under way; a failed one is tried again.
    void List(const QModelIndex& index = {});
    /// Lists a level anew that was listed before; what is below it is forgotten, what is ticked is not.
    void ListAgain(const QModelIndex& index);

    /// Forgets all levels and lists the first one by another lister; what is ticked stays.
    void ListFrom(Lister lister);

    /// Gives a level that is known without being listed.
    void SetLevel(const QStringList& path, TreeLevel level);

    void Toggle(const QModelIndex& index);
    void SetTicked(const QStringList& path, bool ticked);
    const CheckChoice& Choice() const { return m_choice; }
    TreeWalk Walk() const { return WalkTree(m_choice, m_levels); }
    const TreeLevels& Levels() const { return m_levels; }

    /// The root for an invalid index.
    const TreeLevels::Node& NodeAt(const QModelIndex& index) const { return Node(index); }
    QModelIndex IndexOf(const TreeLevels::Node& node) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

signals:
    void ChoiceEdited();
    /// Also when it has failed.
    void Listed(const QStringList& path);

private:
    TreeLevels::Node& Node(const QModelIndex& index) const;
    void Ask(TreeLevels::Node& node);
    void End(TreeLevels::Node& node, const Loaded<TreeLevel>& loaded);
    void Replace(TreeLevels::Node& node, TreeLevel level);
    void TellRow(const TreeLevels::Node& node);
    void TellBelow(const TreeLevels::Node& node);
    QString NoteOf(const TreeLevels::Node& node) const;
    QVariant CheckOf(const TreeLevels::Node& node) const;

    Reader& m_reader;
    QWidget& m_page;
    Lane m_lane;
    Lister m_lister;
    Boxes m_boxes;
    mutable TreeLevels m_levels; ///< nodes are reached through indexes, whoever asks
    CheckChoice m_choice;
    std::map<const TreeLevels::Node*, std::unique_ptr<PageLoader>> m_asking; ///< one a level that is listed
};
