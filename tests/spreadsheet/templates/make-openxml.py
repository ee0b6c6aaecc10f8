# openxml.xlsx: the least that the format asks for, as programs write it that use an Open XML SDK.
# Other prefixes than the usual ones, own folders, no formats, no shared texts, threaded comments.
import zipfile

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
RELATED = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
DRAWING = "http://schemas.openxmlformats.org/drawingml/2006/"
TYPE = "application/vnd.openxmlformats-officedocument."
THREADS = "http://schemas.microsoft.com/office/spreadsheetml/2018/threadedcomments"
THREAD = "{4D2C8E5A-1B7F-4E0B-9C5E-7A1B2C3D4E5F}"
REPLY = "{5E3D9F6B-2C8A-4F1C-8D6F-8B2C3D4E5F60}"
PERSON = "{6F4EA07C-3D9B-4A2D-9E70-9C3D4E5F6071}"
HEADS = ["Time (s)", "Ch1 DAC", "Ch1 ADC", "Ch2 DAC", "Ch2 ADC", "Ch1 Demand", "Ch1 Reading",
         "Ch2 Demand", "Ch2 Reading", "Pressure"]


def related(*targets):
    entries = "".join(
        f'<Relationship Type="{kind if ":" in kind else RELATED + "/" + kind}" Target="{target}" Id="R{number}"/>'
        for number, (kind, target) in enumerate(targets, 1))
    return ('<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
            f"{entries}</Relationships>")


def text(address, words):
    return f'<x:c r="{address}" t="inlineStr"><x:is><x:t>{words}</x:t></x:is></x:c>'


def sheet(rows, rest=""):
    return (f'<x:worksheet xmlns:x="{MAIN}" xmlns:rel="{RELATED}"><x:sheetData>{rows}</x:sheetData>'
            f"{rest}</x:worksheet>")


PARTS = {
    "[Content_Types].xml":
        '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
        f'<Default Extension="xml" ContentType="{TYPE}spreadsheetml.sheet.main+xml"/>'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Default Extension="vml" ContentType="{TYPE}vmlDrawing"/>'
        + "".join(f'<Override PartName="/{part}" ContentType="{kind}"/>' for part, kind in [
            ("book/sheets/one.xml", TYPE + "spreadsheetml.worksheet+xml"),
            ("book/sheets/two.xml", TYPE + "spreadsheetml.worksheet+xml"),
            ("book/sheets/data.xml", TYPE + "spreadsheetml.worksheet+xml"),
            ("book/drawing.xml", TYPE + "drawing+xml"),
            ("book/chart.xml", TYPE + "drawingml.chart+xml"),
            ("book/notes.xml", TYPE + "spreadsheetml.comments+xml"),
            ("book/threads.xml", "application/vnd.ms-excel.threadedcomments+xml"),
            ("book/persons.xml", "application/vnd.ms-excel.person+xml")]) + "</Types>",
    "_rels/.rels": related(("officeDocument", "/book/book.xml")),
    "book/book.xml":
        f'<x:workbook xmlns:x="{MAIN}"><x:sheets>'
        f'<x:sheet name="Overview" sheetId="1" rel:id="R1" xmlns:rel="{RELATED}"/>'
        f'<x:sheet name="All Graphs" sheetId="2" rel:id="R2" xmlns:rel="{RELATED}"/>'
        f'<x:sheet name="DataTemplate" sheetId="3" rel:id="R3" xmlns:rel="{RELATED}"/></x:sheets>'
        '<x:definedNames><x:definedName name="Times">DataTemplate!$A$2:$A$20000</x:definedName>'
        "</x:definedNames></x:workbook>",
    "book/_rels/book.xml.rels": related(
        ("worksheet", "/book/sheets/one.xml"), ("worksheet", "sheets/two.xml"),
        ("worksheet", "sheets/data.xml"),
        ("http://schemas.microsoft.com/office/2017/10/relationships/person", "persons.xml")),
    "book/sheets/one.xml": sheet(
        f'<x:row>{text("B1", "Health check of our site")}</x:row>'
        f'<x:row r="7">{text("B7", "Step")}</x:row>'),
    "book/sheets/two.xml": sheet(""),
    "book/sheets/data.xml": sheet(
        "<x:row>" + "".join(text(f"{column}1", head) for column, head in zip("ABCDEFGHIJ", HEADS))
        + "<x:c><x:f>COUNT(Times)</x:f></x:c>"
        '<x:c><x:f t="array" ref="L1">MAX(DataTemplate!F2:F20000*1)</x:f></x:c></x:row>'
        f'<x:row r="2">{text("L2", "Overview")}</x:row>',
        '<x:dataValidations><x:dataValidation type="list" sqref="K2">'
        "<x:formula1>DataTemplate!$A$1:$J$1</x:formula1></x:dataValidation></x:dataValidations>"
        '<x:hyperlinks><x:hyperlink ref="L2" location="DataTemplate!A2"/></x:hyperlinks>'
        '<x:drawing rel:id="R1"/><x:legacyDrawing rel:id="R2"/>'),
    "book/sheets/_rels/data.xml.rels": related(
        ("drawing", "/book/drawing.xml"), ("vmlDrawing", "../notes.vml"),
        ("comments", "../notes.xml"),
        ("http://schemas.microsoft.com/office/2017/10/relationships/threadedComment", "../threads.xml")),
    "book/drawing.xml":
        f'<d:wsDr xmlns:d="{DRAWING}spreadsheetDrawing" xmlns:m="{DRAWING}main"><d:twoCellAnchor>'
        "<d:from><d:col>12</d:col><d:colOff>0</d:colOff><d:row>39</d:row><d:rowOff>0</d:rowOff></d:from>"
        "<d:to><d:col>20</d:col><d:colOff>0</d:colOff><d:row>55</d:row><d:rowOff>0</d:rowOff></d:to>"
        '<d:graphicFrame macro=""><d:nvGraphicFramePr><d:cNvPr id="2" name="Channel 1"/>'
        "<d:cNvGraphicFramePr/></d:nvGraphicFramePr><d:xfrm>"
        '<m:off x="0" y="0"/><m:ext cx="0" cy="0"/></d:xfrm><m:graphic>'
        f'<m:graphicData uri="{DRAWING}chart"><chart xmlns="{DRAWING}chart" xmlns:q="{RELATED}" '
        'q:id="R1"/></m:graphicData></m:graphic></d:graphicFrame><d:clientData/></d:twoCellAnchor></d:wsDr>',
    "book/_rels/drawing.xml.rels": related(("chart", "chart.xml")),
    "book/chart.xml":
        f'<k:chartSpace xmlns:k="{DRAWING}chart"><k:chart><k:plotArea><k:scatterChart>'
        '<k:scatterStyle val="lineMarker"/><k:ser><k:idx val="0"/><k:order val="0"/>'
        "<k:xVal><k:numRef><k:f>[0]!Times</k:f></k:numRef></k:xVal>"
        "<k:yVal><k:numRef><k:f>DataTemplate!$G$2:$G$600</k:f></k:numRef></k:yVal></k:ser>"
        '<k:axId val="1"/><k:axId val="2"/></k:scatterChart>'
        + "".join(f'<k:valAx><k:axId val="{own}"/><k:scaling/><k:axPos val="{side}"/>'
                  f'<k:crossAx val="{other}"/></k:valAx>' for own, other, side in [(1, 2, "b"), (2, 1, "l")])
        + "</k:plotArea></k:chart></k:chartSpace>",
    "book/notes.xml":
        f'<x:comments xmlns:x="{MAIN}"><x:authors><x:author>tc={THREAD}</x:author></x:authors>'
        '<x:commentList><x:comment ref="K1" authorId="0"><x:text><x:t>Samples of this sheet</x:t>'
        "</x:text></x:comment></x:commentList></x:comments>",
    "book/threads.xml":
        f'<t:ThreadedComments xmlns:t="{THREADS}">'
        f'<t:threadedComment ref="K1" dT="2026-01-16T12:00:00" personId="{PERSON}" id="{THREAD}">'
        "<t:text>Samples of this sheet</t:text></t:threadedComment>"
        f'<t:threadedComment ref="K1" dT="2026-01-16T12:05:00" personId="{PERSON}" id="{REPLY}" '
        f'parentId="{THREAD}"><t:text>Thank you</t:text></t:threadedComment></t:ThreadedComments>',
    "book/persons.xml":
        f'<t:personList xmlns:t="{THREADS}"><t:person displayName="Bench 7" id="{PERSON}"/>'
        "</t:personList>",
    "book/notes.vml":
        '<xml xmlns:v="urn:schemas-microsoft-com:vml" xmlns:o="urn:schemas-microsoft-com:office:office" '
        'xmlns:x="urn:schemas-microsoft-com:office:excel"><v:shapetype id="_x0000_t202" '
        'coordsize="21600,21600" o:spt="202" path="m,l,21600r21600,l21600,xe"/>'
        '<v:shape id="_x0000_s1025" type="#_x0000_t202" style="visibility:hidden">'
        '<x:ClientData ObjectType="Note"><x:Anchor>11, 15, 0, 2, 13, 31, 4, 1</x:Anchor>'
        "<x:Row>0</x:Row><x:Column>10</x:Column></x:ClientData></v:shape></xml>",
}

with zipfile.ZipFile("openxml.xlsx", "w", zipfile.ZIP_DEFLATED) as book:
    for name, content in PARTS.items():
        book.writestr(name, '<?xml version="1.0" encoding="utf-8"?>' + content)
