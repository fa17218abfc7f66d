#include "look/IconRegistry.h"

#include "look/SvgPath.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

using namespace Qt::Literals::StringLiterals;

static void LoadDrawings() {
    Q_INIT_RESOURCE(icons);
}

namespace {

struct NumberedIcon {
    int number;
    const char* name;
};

constexpr NumberedIcon NumberedIcons[] = {
    {HeaderDecorationIcon, "header-divider"},
    {SettingGroupIcon, "setting-group"},
    {SettingIcon, "setting"},
    {RefreshIcon, "refresh"},
    {StartNowIcon, "start"},
    {DeleteIcon, "delete"},
    {UploadIcon, "upload"},
    {DownloadIcon, "download"},
    {OtherOperationIcon, "activity"},
    {TaskListIcon, "tasks"},
    {SystemTasksIcon, "tasks-system"},
    {CompletedTasksIcon, "tasks-done"},
    {TaskSettingsIcon, "task-settings"},
    {MountedIcon, "mounted"},
    {PauseIcon, "pause"},
    {StartIcon, "start"},
    {CancelTaskIcon, "cancel"},
    {SystemActivitiesIcon, "activity"},
    {ResumeIcon, "resume"},
    {FolderIcon, "folder"},
    {FileVersionsIcon, "history"},
    {TaskPendingIcon, "pending"},
    {TaskRunningIcon, "running"},
    {TaskPausedIcon, "paused"},
    {TaskFailedIcon, "failed"},
    {TaskCompletedIcon, "completed"},
    {TraceIcon, "trace"},
    {BackupIcon, "backup"},
    {CompressionIcon, "compression"},
    {CopyIcon, "copy"},
    {DeleteAllIcon, "delete-all"},
    {EditIcon, "edit"},
    {DismountIcon, "dismount"},
    {EncryptionIcon, "encryption"},
    {LoginIcon, "login"},
    {MountIcon, "mount"},
    {OpenFolderIcon, "folder-open"},
    {QuotaIcon, "quota"},
    {InformationIcon, "information"},
    {ProxyIcon, "proxy"},
    {EmailIcon, "email"},
    {SearchIcon, "search"},
    {SettingsIcon, "settings"},
    {SummaryIcon, "summary"},
    {SyncIcon, "sync"},
    {FileIcon, "file"},
    {TargetIcon, "target"},
};

/// One drawing: a path in a box of 16 units, filled or drawn with a round pen, in one colour.
struct Drawing {
    QPainterPath path;
    QColor colour;
    qreal strokeWidth = 0; ///< 0 for a filled path

    void Paint(QPainter& painter) const {
        painter.setRenderHint(QPainter::Antialiasing);
        if (strokeWidth > 0)
            painter.strokePath(path, QPen(colour, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        else
            painter.fillPath(path, colour);
    }
};

constexpr int DrawingUnits = 16;

/// Reads the one <path> of an SVG file of ours; none when the file is missing or draws in another way.
std::optional<Drawing> ReadDrawing(const QString& name) {
    QFile file(u":/icons/%1.svg"_s.arg(name));
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QXmlStreamReader reader(&file);
    while (!reader.atEnd() &&
           !(reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"path"))
        ;
    const QXmlStreamAttributes attributes = reader.attributes();
    const std::optional<QPainterPath> path = ParseSvgPath(attributes.value("d"_L1));
    if (!path || path->isEmpty())
        return std::nullopt;
    const bool stroked = attributes.hasAttribute("stroke"_L1);
    const QLatin1String paint(stroked ? "stroke" : "fill");
    return Drawing{*path, QColor(attributes.value(paint).toString()),
                   stroked ? attributes.value("stroke-width"_L1).toDouble() : 0};
}

/// The icons made so far, by name and colour: paints ask for theirs again and again.
QHash<std::pair<QString, QRgb>, QIcon>& KnownIcons() {
    static QHash<std::pair<QString, QRgb>, QIcon> icons;
    return icons;
}

/// Paints a drawing at any size; each size is rendered once and kept in the pixmap cache.
class DrawingIconEngine : public QIconEngine {
public:
    DrawingIconEngine(const QString& name, Drawing drawing)
        : m_key(u"icon/%1/%2"_s.arg(name, drawing.colour.name())), m_drawing(std::move(drawing)) {}

    QIconEngine* clone() const override { return new DrawingIconEngine(*this); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        painter->drawPixmap(rect, scaledPixmap(rect.size() * painter->device()->devicePixelRatioF(), mode,
                                               state, painter->device()->devicePixelRatioF()));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1.0);
    }

    /// `size` counts device pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        const bool disabled = mode == QIcon::Disabled;
        const QString key =
            u"%1/%2x%3/%4"_s.arg(m_key).arg(size.width()).arg(size.height()).arg(disabled ? 1 : 0);
        QPixmap pixmap;
        if (!QPixmapCache::find(key, &pixmap)) {
            pixmap = Render(size, disabled);
            QPixmapCache::insert(key, pixmap);
        }
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }

private:
    QPixmap Render(const QSize& size, bool disabled) const {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setOpacity(disabled ? 0.4 : 1.0);
        painter.scale(size.width() / qreal(DrawingUnits), size.height() / qreal(DrawingUnits));
        m_drawing.Paint(painter);
        return pixmap;
    }

    QString m_key;
    Drawing m_drawing;
};

} // namespace

QIcon IconRegistry::Icon(const QString& name, QColor colour) {
    const std::pair key(name, colour.isValid() ? colour.rgba() : 0);
    if (const auto known = KnownIcons().constFind(key); known != KnownIcons().constEnd())
        return *known;
    LoadDrawings();
    std::optional<Drawing> drawing = ReadDrawing(name);
    if (!drawing)
        return {};
    if (colour.isValid())
        drawing->colour = colour;
    QIcon icon(new DrawingIconEngine(name, std::move(*drawing)));
    KnownIcons().insert(key, icon);
    return icon;
}

QIcon IconRegistry::Icon(int number, QColor colour) {
    return Icon(Name(number), colour);
}

QString IconRegistry::Name(int number) {
    const auto* found = std::find_if(std::begin(NumberedIcons), std::end(NumberedIcons),
                                     [number](const NumberedIcon& icon) { return icon.number == number; });
    return found == std::end(NumberedIcons) ? QString() : QLatin1String(found->name);
}

QStringList IconRegistry::Names() {
    LoadDrawings();
    QStringList names;
    for (const QString& file : QDir(u":/icons"_s).entryList({u"*.svg"_s}, QDir::Files, QDir::Name))
        names.append(file.chopped(4));
    return names;
}
