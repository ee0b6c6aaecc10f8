// Makes pages that any browser shows of the guides, with their pictures beside them.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTextDocument>
#include <fmt/format.h>

#include <exception>
#include <stdexcept>

namespace {

constexpr auto Style = R"(<style>
body { font-family: sans-serif !important; font-size: 11pt !important; line-height: 1.45;
       max-width: 60em; margin: 2em auto; padding: 0 1em; }
h1, h2, h3 { margin: 1.2em 0 0.3em !important; }
img { max-width: 100%; border: 1px solid #ccc; }
table { border-collapse: collapse; }
td, th { border: 1px solid #ccc; padding: 2px 8px; vertical-align: top; }
td p, th p, li p { margin: 2px 0 !important; }
</style></head>)";

void Require(bool done, const QString& path) {
    if (!done)
        throw std::runtime_error(path.toStdString() + " cannot be read or written");
}

/// Links between the documents lead to the pages made of them.
QString PageOf(const QString& markdown) {
    QTextDocument document;
    document.setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
    QString page = document.toHtml();
    static const QRegularExpression link(QStringLiteral("href=\"([\\w-]+)\\.md(#[\\w-]*)?\""));
    page.replace(link, QStringLiteral("href=\"\\1.html\""));
    return page.replace(QStringLiteral("</head>"), QLatin1String(Style));
}

void MakePage(const QString& source, const QDir& folder) {
    QFile markdown(source);
    Require(markdown.open(QIODevice::ReadOnly), source);
    QFile page(folder.filePath(QFileInfo(source).baseName() + QStringLiteral(".html")));
    Require(page.open(QIODevice::WriteOnly), page.fileName());
    const QByteArray text = PageOf(QString::fromUtf8(markdown.readAll())).toUtf8();
    Require(page.write(text) == text.size() && page.flush(), page.fileName());
}

void CopyPictures(const QDir& from, const QDir& folder) {
    const QDir pictures(folder.filePath(QStringLiteral("pictures")));
    Require(pictures.mkpath(QStringLiteral(".")), pictures.path());
    for (const QString& name : from.entryList({QStringLiteral("*.png")})) {
        QFile::remove(pictures.filePath(name));
        Require(QFile::copy(from.filePath(name), pictures.filePath(name)), name);
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc < 3) {
        fmt::print(stderr, "usage: ombrix_make_guides FOLDER GUIDE.md...\n");
        return 2;
    }
    try {
        const QDir folder(QString::fromLocal8Bit(argv[1]));
        Require(folder.mkpath(QStringLiteral(".")), folder.path());
        for (int guide = 2; guide < argc; ++guide)
            MakePage(QString::fromLocal8Bit(argv[guide]), folder);
        CopyPictures(
            QFileInfo(QString::fromLocal8Bit(argv[2])).dir().filePath(QStringLiteral("pictures")),
            folder);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "ombrix_make_guides: {}\n", error.what());
        return 1;
    }
}
