#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include <filesystem>

#include "qvtools/platform/win32/gdi_output.h"
#include "support/temporary_directory.h"

namespace {

// As little of a PostScript printer's description as makes a driver take it: A4 at 300 dots an inch.
constexpr char kDescription[] = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "QVTEST.PPD"
*Product: "(Test)"
*PSVersion: "(3010.000) 0"
*ModelName: "Test"
*NickName: "Test"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultResolution: 300dpi
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*DefaultImageableArea: A4
*ImageableArea A4/A4: "0 0 595 842"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*DefaultFont: Courier
*Font Courier: Standard "(1.0)" Standard ROM
)ppd";

char* text(const char* constant) {
  return const_cast<char*>(constant);
}

std::string native(const std::string& path) {
  return std::filesystem::path(path).make_preferred().string();
}

/// A printer, where this user may make one.
struct Printing : testing::Test {
  Printing() {
    const std::string description = native(directory.write("qvtest.ppd", kDescription));
    DRIVER_INFO_3A driver = {};
    driver.cVersion = 3;
    driver.pName = text("qvtest driver");
    driver.pEnvironment = text("Windows x64");
    driver.pDriverPath = driver.pConfigFile = text("wineps.drv");
    driver.pDataFile = text(description.c_str());
    driver.pDefaultDataType = text("RAW");
    if (!AddPrinterDriverExA(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                             APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY))
      return;
    PRINTER_INFO_2A printer = {};
    printer.pPrinterName = text("qvtest");
    printer.pPortName = text("LPT1:");
    printer.pDriverName = driver.pName;
    printer.pPrintProcessor = text("wineps");
    printer.pDatatype = text("RAW");
    if (const HANDLE made = AddPrinterA(nullptr, 2, reinterpret_cast<BYTE*>(&printer))) ClosePrinter(made);
    dc = CreateDCA("winspool", "qvtest", nullptr, nullptr);
  }
  ~Printing() override {
    DeleteDC(dc);
    if (HANDLE printer; OpenPrinterA(text("qvtest"), &printer, nullptr)) {
      DeletePrinter(printer);
      ClosePrinter(printer);
    }
    DeletePrinterDriverA(nullptr, text("Windows x64"), text("qvtest driver"));
  }

  const qvtest::TemporaryDirectory directory;
  HDC dc = nullptr;
};

// Whether the page leaves the spooler is wine's affair: its printer has nowhere to send it.
TEST_F(Printing, DrawsOnPages) {
  if (!dc) GTEST_SKIP() << "no printer can be made here";
  const CSize page(GetDeviceCaps(dc, HORZRES), GetDeviceCaps(dc, VERTRES));
  EXPECT_NEAR(page.cx, 595 * 300 / 72, 2);
  int pages = 0;
  qv::print_pages(dc, "\xD6\xD0", 2, [&](int index, CDC& context) {
    EXPECT_EQ(index, pages++);
    EXPECT_TRUE(context.IsPrinting() && !context.IsMetafile());
    EXPECT_EQ(context.GetResolution(), page);
    context.MoveTo(100, 200);
    context.LineTo(300, 400);
  });
  EXPECT_EQ(pages, 2);
}

}  // namespace
