// kxbase-gui: the unit table and the product folder tree in sortable lists (click a header
// to sort, double-click a cell to see it in the status bar), an ellipse under a chosen angle
// rasterised by the library's span operations into an ABitmap, and buttons for a message
// box, a status message and the password dialog.
//
//   kxbase-gui [--angle DEG] [--screenshot FILE.png]
//
// With --screenshot the window is drawn once, saved as PNG and the program exits (the README's
// picture is made so, under Xvfb, by scripts/screenshot.sh).
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include <kxbase/ellipse.h>
#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/ui/image.h>
#include <kxbase/ui/list_ctrl.h>
#include <kxbase/ui/messages.h>
#include <kxbase/ui/ui.h>
#include <kxbase/units/units.h>
#include <kxbase/version.h>
#include <kxbase/widgets/number_format.h>

namespace {

constexpr int kCanvas = 260;

// Numbers in column 2 sort by value: the key is the number zero-padded behind a sign class.
INT64 NumericKey(CString& out, const char* text, int column) {
    if (column != 2) {
        out = text;
        return 0;
    }
    const double v = std::atof(text);
    out.Format("%c%020.8f", v < 0 ? '0' : '1', v < 0 ? 1e11 + v : v);
    return 0;
}

void ShowCellOnDoubleClick(CSortListCtrl* list) {
    QObject::connect(list, &QAbstractItemView::doubleClicked, list, [list] {
        if (list->GetDblClkItem() < 0) return;
        ZelStatusMsg(
            "row %d, column %d: %s", list->GetDblClkItem(), list->GetDblClkSubItem(),
            list->GetItemText(list->GetDblClkItem(), list->GetDblClkSubItem()).GetString());
    });
}

CSortListCtrl* UnitTable() {
    auto* list = new CSortListCtrl;
    list->InsertColumn(0, "Unit", LVCFMT_LEFT, 110);
    list->InsertColumn(1, "Kind", LVCFMT_LEFT, 90);
    list->InsertColumn(2, "Value", LVCFMT_RIGHT, 150);
    int row = 0;
    auto add = [&](const CString& name, const char* kind, double value) {
        list->InsertItem(row, name);
        list->SetItemText(row, 1, kind);
        list->SetItemText(row, 2, ZelFloatPrecisionString(value, 8, 1));
        list->SetItemData(row, static_cast<DWORD_PTR>(row + 1));
        ++row;
    };
    for (int u = SIZE_PIXEL; u <= SIZE_INCH; ++u) {
        CString name;
        SizeUnitString(name, static_cast<ASizeUnit>(u));
        add(name, "1 unit in mm", ToMM(1.0, 720.0, RES_DPI, static_cast<ASizeUnit>(u)));
    }
    for (int u = RES_DPI; u <= RES_DPM; ++u) {
        CString name;
        ResUnitString(name, static_cast<AResUnit>(u));
        add(name, "1 unit in DPI", ToDPI(1.0, static_cast<AResUnit>(u)));
    }
    list->SetSortParam(0, 2, NumericKey);
    list->SortItemsEx();
    ShowCellOnDoubleClick(list);
    return list;
}

CSortListCtrl* FolderTree() {
    auto* list = new CSortListCtrl;
    list->InsertColumn(0, "Folder", LVCFMT_LEFT, 130);
    list->InsertColumn(1, "Path", LVCFMT_LEFT, 330);
    list->InsertColumn(2, "Exists", LVCFMT_CENTER, 60);
    const CAppPath& p = g_AppPath;
    const std::pair<const char*, const CString*> rows[] = {
        {"App", &p.m_strAppPath},
        {"FMT", &p.m_strFmtPath},
        {"DRV", &p.m_strDrvPath},
        {"LIB", &p.m_strLibPath},
        {"RPT", &p.m_strRptPath},
        {"Profile", &p.m_strProfilePath},
        {"Config", &p.m_strConfigPath},
        {"Chart", &p.m_strChartPath},
        {"Template", &p.m_strTemplatePath},
        {"Printer", &p.m_strPrinterPath},
        {"Debug", &p.m_strDebugPath},
        {"Input", &p.m_strInputPath},
        {"InputCMYK", &p.m_strInputCMYKPath},
        {"Monitor", &p.m_strMonitorPath},
        {"Output", &p.m_strOutputPath},
        {"Curve", &p.m_strCurvePath},
        {"NameColor", &p.m_strNameColorPath},
        {"ChartLine", &p.m_strChartLinePath},
        {"ChartICC", &p.m_strChartICCPath},
        {"ChartProof", &p.m_strChartProofPath},
    };
    int row = 0;
    for (const auto& [name, path] : rows) {
        list->InsertItem(row, name);
        list->SetItemText(row, 1, *path);
        list->SetItemText(row, 2,
                          QDir(QString::fromUtf8(path->GetString())).exists() ? "yes" : "no");
        list->SetItemData(row, static_cast<DWORD_PTR>(row + 1));
        ++row;
    }
    ShowCellOnDoubleClick(list);
    return list;
}

// The ellipse inscribed in a 220 x 120 rectangle, turned by `degrees`, filled from its
// scan-line spans into a white ABitmap.
QPixmap EllipsePixmap(double degrees) {
    ABitmap bitmap;
    if (!bitmap.CreateBitmap(kCanvas, kCanvas)) return {};
    std::vector<BYTE> bits(ABitmap::RgbBitsSize(kCanvas, kCanvas));
    bitmap.SetRgbBits(nullptr);
    bitmap.GetRgbBits(bits.data());
    const RECT rc{20, 70, 240, 190};
    RSRLINE line;
    const int first = CEllipse::EllipseRasterLine(rc, degrees * M_PI / 180.0, line);
    const UINT stride = ABitmap::RgbBitsStride(kCanvas);
    for (int i = 0; i < line.spans.GetSize(); ++i) {
        const int y = first + i;
        if (y < 0 || y >= kCanvas) continue;
        const POINT run = line.spans[i];
        BYTE* row = bits.data() + static_cast<std::size_t>(kCanvas - 1 - y) * stride;
        for (int x = std::max(0, static_cast<int>(run.x));
             x <= std::min(kCanvas - 1, static_cast<int>(run.y)); ++x) {
            row[3 * x] = 0xB0;      // blue
            row[3 * x + 1] = 0x60;  // green
            row[3 * x + 2] = 0x20;  // red
        }
    }
    bitmap.SetRgbBits(bits.data());
    return KxBitmapToPixmap(bitmap);
}

class Window : public QMainWindow {
public:
    explicit Window(double angle) {
        setWindowTitle("kxbase-gui " KXBASE_VERSION_STRING);
        auto* central = new QWidget;
        auto* columns = new QHBoxLayout(central);

        auto* lists = new QSplitter(Qt::Vertical);
        auto* unitBox = new QGroupBox("Units (click a header to sort)");
        (new QVBoxLayout(unitBox))->addWidget(UnitTable());
        auto* folderBox = new QGroupBox("Product folder tree");
        (new QVBoxLayout(folderBox))->addWidget(FolderTree());
        lists->addWidget(unitBox);
        lists->addWidget(folderBox);
        columns->addWidget(lists, 3);

        auto* right = new QVBoxLayout;
        auto* shapeBox = new QGroupBox("Ellipse spans in an ABitmap");
        auto* shape = new QVBoxLayout(shapeBox);
        m_image = new QLabel;
        m_image->setFixedSize(kCanvas, kCanvas);
        shape->addWidget(m_image);
        auto* angleRow = new QHBoxLayout;
        angleRow->addWidget(new QLabel("Angle (degrees)"));
        auto* spin = new QSpinBox;
        spin->setRange(0, 359);
        spin->setValue(static_cast<int>(angle));
        angleRow->addWidget(spin);
        shape->addLayout(angleRow);
        right->addWidget(shapeBox);

        auto* message = new QPushButton("Message box...");
        auto* status = new QPushButton("Status message");
        auto* password = new QPushButton("Password dialog...");
        right->addWidget(message);
        right->addWidget(status);
        right->addWidget(password);
        right->addStretch();
        columns->addLayout(right, 1);
        setCentralWidget(central);
        statusBar()->showMessage("Ready");

        connect(spin, &QSpinBox::valueChanged, this,
                [this](int v) { m_image->setPixmap(EllipsePixmap(v)); });
        m_image->setPixmap(EllipsePixmap(angle));
        connect(message, &QPushButton::clicked, this, [] {
            const int r = ZelDialogMsg(nullptr, 0, 0, MB_YESNO | MB_ICONQUESTION,
                                       "Screen: %d x %d pixels, %.2f x %.2f DPI. Keep it?",
                                       g_EnvObj.m_nHorzRes, g_EnvObj.m_nVertRes,
                                       g_EnvObj.m_dScreenDpiX, g_EnvObj.m_dScreenDpiY);
            ZelStatusMsg("The message box answered %s", r == IDYES  ? "IDYES"
                                                        : r == IDNO ? "IDNO"
                                                                    : "0");
        });
        connect(status, &QPushButton::clicked, this, [] {
            static int n = 0;
            ZelStatusMsg("Status message number %d from ZelStatusMsg", ++n);
        });
        connect(password, &QPushButton::clicked, this, [] {
            CString first, second;
            const int ok = ZelPasswordDlg(first, &second, 1, 0);
            ZelStatusMsg(ok ? "Password of %d characters entered" : "Password dialog cancelled%.0d",
                         first.GetLength());
        });
    }

private:
    QLabel* m_image;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    app.setApplicationName("kxbase-gui");
    KxUiInit();
    QCommandLineParser parser;
    parser.setApplicationDescription("Tries kxBaseCommon's user-interface classes.");
    parser.addHelpOption();
    QCommandLineOption angle("angle", "Angle of the ellipse in degrees.", "DEG", "30");
    QCommandLineOption shot("screenshot", "Save the window as PNG and exit.", "FILE");
    parser.addOption(angle);
    parser.addOption(shot);
    parser.process(app);

    Window window(parser.value(angle).toDouble());
    window.resize(900, 620);
    window.show();
    if (parser.isSet(shot)) {
        const QString file = parser.value(shot);
        QTimer::singleShot(300, &window, [&window, file] {
            const bool saved = window.grab().save(file, "PNG");
            std::fprintf(saved ? stdout : stderr, "%s %s\n", saved ? "saved" : "cannot write",
                         file.toLocal8Bit().constData());
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
