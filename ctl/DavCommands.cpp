#include "ctl/DavListCommand.h"
#include "ctl/Rows.h"

#include "service/DavListing.h"
#include "service/RequestText.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// Paths are as the folder picker has them: the root is the empty one, all others begin with a slash.
bool IsPath(const Invocation& invocation, const QString& path) {
    const bool is = path.isEmpty() || path.startsWith(u'/');
    if (!is)
        invocation.End(CtlExit::Usage, u"A path begins with \"/\", as in /Home/Pictures."_s);
    return is;
}

/// Whether the request may go out: no refusal stands in its way.
bool MaySend(const Invocation& invocation, const QString& path, const QString& refusal) {
    if (!IsPath(invocation, path))
        return false;
    if (!refusal.isEmpty())
        invocation.End(CtlExit::Usage, refusal);
    return refusal.isEmpty();
}

CtlExit MakeFolder(const Invocation& invocation) {
    const QString& parent = invocation.operands[0];
    const QString& name = invocation.operands[1];
    if (!MaySend(invocation, parent, NewFolderRefusal(parent, name)))
        return CtlExit::Usage;
    return invocation.End(CreateDavFolder(ServiceClient(), parent, name, invocation.stop));
}

CtlExit Remove(const Invocation& invocation) {
    const QString& path = invocation.operands[0];
    if (!MaySend(invocation, path, DeletedPathRefusal(path)))
        return CtlExit::Usage;
    return invocation.End(DeleteDavPath(ServiceClient(), path, invocation.stop));
}

} // namespace

CtlExit ListDavFolder(const Invocation& invocation) {
    const QString& path = invocation.operands[0];
    if (!MaySend(invocation, path, ListedPathRefusal(path)))
        return CtlExit::Usage;
    const std::vector<Column> columns{{"name"_L1, "NAME"_L1},
                                      {"href"_L1},
                                      {"isFolder"_L1, "FOLDER"_L1},
                                      {"lastModified"_L1, "MODIFIED"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        const ServiceAnswer answer = RequestDavListing(ServiceClient(), path, invocation.stop);
        if (!answer)
            return invocation.End(answer);
        const DavListing listing = ParseMultistatus(answer.body, path);
        for (const DavEntry& entry : listing.entries) {
            const QString href = QString::fromUtf8(entry.href);
            const QString modified = QString::fromUtf8(entry.lastModified);
            if (!rows.Add({entry.name, href, entry.isFolder, modified}))
                break;
        }
        return answer.length ? CtlExit::Done : invocation.EndBrokenOff();
    });
}

std::vector<Command> DavCommands() {
    return {
        {"dav ls"_L1,
         {{"PATH"_L1}},
         {JsonOption},
         "Lists a folder of the cloud drive; the empty path is its root."_L1,
         ListDavFolder},
        {"dav mkdir"_L1,
         {{"PARENT"_L1}, {"NAME"_L1}},
         {},
         "Makes a folder below another one."_L1,
         MakeFolder},
        {"dav rm"_L1,
         {{"PATH"_L1}},
         {},
         "Deletes a file, or a folder with all that is in it; a whole storage account is not deleted."_L1,
         Remove},
    };
}
