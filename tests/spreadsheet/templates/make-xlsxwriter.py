# xlsxwriter.xlsx: what came with Excel 2010 and later: data bars, sparklines, dynamic arrays.
import xlsxwriter

HEADS = ["Time (s)", "Ch1 DAC", "Ch1 ADC", "Ch2 DAC", "Ch2 ADC", "Ch1 Demand", "Ch1 Reading",
         "Ch2 Demand", "Ch2 Reading", "Pressure"]

book = xlsxwriter.Workbook("xlsxwriter.xlsx")
overview = book.add_worksheet("Overview")
book.add_worksheet("All Graphs")
data = book.add_worksheet("DataTemplate")

overview.write("B1", "Health check of our site", book.add_format({"bold": True, "font_size": 18}))
head = book.add_format({"bold": True, "bg_color": "#E2EFDA"})
for row in (6, 7, 8):
    overview.set_row(row, 18)
    for column in range(1, 15):
        overview.write_blank(row, column, None, head)
overview.write("B7", "Step", head)
overview.set_column("L:L", 40)
overview.write_array_formula("C8:D8", "{=C10:D10*2}", head)
overview.data_validation("E8", {"validate": "list", "source": "=$B$7:$B$9"})
overview.conditional_format("F7:G9", {"type": "data_bar", "data_bar_2010": True})
overview.add_sparkline("K8", {"range": "Overview!F8:J8"})

data.write_row("A1", HEADS)
book.define_name("Times", "=DataTemplate!$A$2:$A$20000")
data.write_formula("K1", "=COUNT(Times)")
data.write_array_formula("L1:L1", "{=MAX(DataTemplate!F2:F20000*1)}")
data.write_dynamic_array_formula("K3:K3", "=LEN(DataTemplate!A1)")
data.write_url("L2", "internal:'DataTemplate'!A2", string="Overview")
data.write_comment("K1", "Samples of this sheet")
data.data_validation("K2", {"validate": "list", "source": "=DataTemplate!$A$1:$J$1"})
data.conditional_format("G2:G20000", {"type": "data_bar", "data_bar_2010": True})
data.add_sparkline("K4", {"range": "DataTemplate!G2:G600"})
chart = book.add_chart({"type": "scatter", "subtype": "straight"})
chart.add_series({"categories": "=DataTemplate!$A$2:$A$600", "values": "=DataTemplate!$G$2:$G$600"})
data.insert_chart("M40", chart)
shape = {"textlink": "=DataTemplate!$K$1"}
data.insert_textbox("M60", "", shape)
book.close()
