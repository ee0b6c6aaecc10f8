# openpyxl.xlsx: pictures, charts and drawings without the usual prefixes.
import base64
import io

from openpyxl import Workbook
from openpyxl.chart import Reference, ScatterChart, Series
from openpyxl.comments import Comment
from openpyxl.drawing.image import Image
from openpyxl.formatting.rule import CellIsRule
from openpyxl.styles import Font, PatternFill
from openpyxl.workbook.defined_name import DefinedName
from openpyxl.worksheet.datavalidation import DataValidation

LOGO = ("iVBORw0KGgoAAAANSUhEUgAAAAgAAAAICAIAAABLbSncAAAAEklEQVR4nGNgSHuAFTEMLQkA6UCAAYdnfbIA"
        "AAAASUVORK5CYII=")
HEADS = ["Time (s)", "Ch1 DAC", "Ch1 ADC", "Ch2 DAC", "Ch2 ADC", "Ch1 Demand", "Ch1 Reading",
         "Ch2 Demand", "Ch2 Reading", "Pressure"]

book = Workbook()
overview = book.active
overview.title = "Overview"
overview["B1"] = "Health check of our site"
overview["B1"].font = Font(size=18, bold=True)
for row in (7, 8, 9):
    for column in "BCDEFGHIJKLNO":
        overview[f"{column}{row}"].fill = PatternFill("solid", fgColor="DDE6F2")
overview["B7"] = "Step"
overview.merge_cells("B7:B9")
overview.column_dimensions["L"].width = 40
overview.conditional_formatting.add(
    "C7:D9", CellIsRule(operator="lessThan", formula=["0"], font=Font(color="FF0000")))
overview.print_area = "A1:P9"
logo = Image(io.BytesIO(base64.b64decode(LOGO)))
logo.width = logo.height = 48
overview.add_image(logo, "N2")
book.create_sheet("All Graphs")["B1"] = "All Graphs"

data = book.create_sheet("DataTemplate")
data.append(HEADS)
data["K1"] = "=COUNT(Times)"
data["L1"] = "=MAX(DataTemplate!F2:F20000)"
data["L2"] = "Overview"
data["L2"].hyperlink = "#DataTemplate!A2"
data["L2"].hyperlink.location = "DataTemplate!A2"
data["K1"].comment = Comment("Samples of this sheet", "Bench 7")
choice = DataValidation(type="list", formula1="DataTemplate!$A$1:$J$1")
choice.add("K2")
data.add_data_validation(choice)
book.defined_names.append(DefinedName("Times", attr_text="DataTemplate!$A$2:$A$20000"))
chart = ScatterChart()
chart.title = "Channel 1"
chart.series.append(Series(Reference(data, min_col=7, min_row=2, max_row=600),
                           Reference(data, min_col=1, min_row=2, max_row=600), title="Reading"))
data.add_chart(chart, "M40")
book.save("openpyxl.xlsx")
