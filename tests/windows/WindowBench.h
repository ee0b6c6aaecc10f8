#pragma once

#include "calibration/history/RecordedRun.h"
#include "platform/text/Paths.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/NoConverter.h"
#include "support/TestBench.h"
#include "windows/main/AIBAccessoriesWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace ombrix {

/// The main window on a simulated bench in virtual time; events are handled with every pass of
/// a running procedure.
class WindowBench {
  public:
    explicit WindowBench(const std::string& bench = "acu",
                         const std::vector<std::string>& faults = {}, AIBControl* library = nullptr)
        : Bench(bench, faults, library),
          Window(Bench.TheStation,
                 {.EndProgram = [this] { Bench.Events.EndProgram(); },
                  .Reports = [this](OpenExcelView& wait) { return Reports(wait); },
                  .Journals =
                      [](const ReportTools& tools) {
                          JournalReaders readers;
                          AddCalibrationReaders(readers, tools);
                          return readers;
                      },
                  .Version = "1.2.34",
                  .Simulation = library == nullptr ? bench : "",
                  .StartAnew =
                      [this](const std::string& library) { StartedAnew.push_back(library); }}) {
        Bench.Files.Mount(Paths::Program, PROGRAMS_FOLDER);
        Bench.Events.EveryPass = [] { QCoreApplication::processEvents(); };
        Window.show();
        Window.DetectAndProgramAIBs();
    }

    template <class Control>
    Control& Find(const QString& name) {
        return FindIn<Control>(Window, name);
    }
    template <class Control>
    static Control& FindIn(QWidget& window, const QString& name) {
        auto* control = window.findChild<Control*>(name);
        if (control == nullptr)
            throw std::runtime_error("no control " + name.toStdString());
        return *control;
    }
    static QWidget* TopLevel(const QString& name) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == name && window->isVisible())
                return window;
        }
        return nullptr;
    }

    static QWidget* StageWindow() { return TopLevel("frmACUCalibration"); }
    /// Handles the windows' events, and looks at them, in one pass of so many: hours of a
    /// calibration then take seconds, and the windows still live.
    void LookRarely(std::function<void()> look) {
        Bench.Events.EveryPass = [look = std::move(look), pass = 0]() mutable {
            constexpr int passesBetween = 500;
            if (++pass % passesBetween != 0)
                return;
            QCoreApplication::processEvents();
            look();
        };
    }

    /// Acts on a window as soon as it stands.
    static void OnceShown(const QString& name, const std::function<void(QWidget&)>& act) {
        QTimer::singleShot(5, [name, act] {
            if (QWidget* window = TopLevel(name))
                act(*window);
            else
                OnceShown(name, act);
        });
    }

    QString LabelText(const QString& name) { return Find<QLabel>(name).text(); }
    void Click(const QString& name) {
        QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    }
    /// Ticks or unticks a box with a click on the box itself.
    void Tick(const QString& name) { TickIn(Window, name); }
    static void TickIn(QWidget& window, const QString& name) {
        auto& box = FindIn<QAbstractButton>(window, name);
        constexpr QPoint onTheMark(8, 8);
        QTest::mouseClick(&box, Qt::LeftButton, {}, onTheMark);
    }
    /// One round of the live panel.
    void Update() { Click("cmdUpdate"); }
    /// Puts another bench in the place of the present one, as when boards are plugged and pulled.
    void Plug(const std::string& bench, const std::vector<std::string>& faults = {}) {
        std::destroy_at(&Bench.Bench);
        std::construct_at(
            &Bench.Bench, Bench.Time,
            BenchOptions{bench, Faults::Parse(faults), 1, Bench.Folder.Path() / "simulator"});
    }

    TestBench Bench;
    /// The libraries with which the program was to begin anew; none: the simulated bench.
    std::vector<std::string> StartedAnew;
    AIBAccessoriesWindow Window;

  private:
    ReportTools Reports(OpenExcelView& wait) {
        return {Bench.TheStation,
                [this] { return std::make_unique<XlsxApplication>(Bench.Files, m_Converter); },
                wait, Paths::Templates};
    }

    SameContent m_Converter;
};

} // namespace ombrix
