/// \file
/// CAppPath: the product's folder tree.
///
/// Every folder hangs below the product folder, which is the folder holding the library file
/// itself (or the folder a host names, see below). Each member is a folder path ending in '/':
///
/// \verbatim
///   m_strAppPath          product folder           m_strDebugPath       <product>/Debug/
///   m_strFmtPath          <product>/FMT/           m_strInputPath       <Profile>/Input/
///   m_strDrvPath          <product>/DRV/           m_strInputCMYKPath   <Profile>/InputCMYK/
///   m_strLibPath          <product>/LIB/           m_strMonitorPath     <Profile>/Monitor/
///   m_strRptPath          <product>/RPT/           m_strOutputPath      <Profile>/Output/
///   m_strProfilePath      <product>/Profile/       m_strCurvePath       <Profile>/Curve/
///   m_strConfigPath       <product>/Config/        m_strNameColorPath   <Profile>/NameColor/
///   m_strChartPath        <product>/Chart/         m_strChartLinePath   <Chart>/ChartLine/
///   m_strTemplatePath     <product>/Template/      m_strChartICCPath    <Chart>/ChartICC/
///   m_strPrinterPath      <Config>/Printer/        m_strChartProofPath  <Chart>/ChartProof/
/// \endverbatim
///
/// So for a library at /opt/rip/lib/libkxBaseCommon.so the CMYK input profile folder is
/// /opt/rip/lib/Profile/InputCMYK/ and the printer folder is /opt/rip/lib/Config/Printer/.
///
/// The library keeps one instance, g_AppPath, filled at start-up:
///  - When the environment variable KXBASE_PRODUCT_DIR names a folder, that folder is the
///    product folder: start-up creates it (one level, its parent must exist) and the tree in it.
///    A relative name is taken relative to the current folder at load. The variable is ignored
///    in set-user-id processes.
///  - Otherwise the product folder is the library file's folder, and start-up creates the tree
///    there, except when that folder is a system folder (see IsSystemFolder: a library
///    installed in /usr/lib must not fill it with product folders) or is not writable by the
///    process. g_AppPath is filled in every case; only the creation is skipped, and a host
///    that wants the tree elsewhere calls InitFromFolder and then CreatePath.
/// When the library is linked statically, "the library file" is the executable.
/// KxProductTreeNote() says which of these happened.
///
/// Thread-safety: a CAppPath is a plain value; g_AppPath is written at start-up (and by the
/// host, if it re-initialises it) and otherwise only read.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

/// The product's folder paths, one member per folder (see the file description for the layout).
class KXBASE_API CAppPath {
public:
    /// Every member empty. Copy and move copy all twenty paths.
    CAppPath() = default;

    /// Fills every member from the folder of module `hModule`'s file (a null handle means
    /// this library). The folder is the file name cut just after its last '/'; a name without
    /// '/' gets one appended (it then names a folder of its own). A handle that is not a
    /// loaded module has no file name: the product folder is then empty and the other
    /// members are relative names ("FMT/", "Profile/Input/", ...), relative to the current
    /// folder. Returns 1.
    int Init(HINSTANCE hModule);

    /// Fills every member from an explicit product folder; a '/' is appended when the text
    /// does not end in one. A null or empty folder gives the relative names as above.
    /// Returns 1.
    int InitFromFolder(const char* folder);

    /// Creates, one level each with ADocObj::CreateDirectoryA, every folder of the tree except
    /// the product folder itself, parents before children: FMT, DRV, LIB, RPT, Profile,
    /// Config, Chart, the six profile folders, the three chart folders, Template, Printer,
    /// Debug. Existing folders and folders that cannot be made are skipped in silence.
    /// Returns 1 whatever happens; never throws.
    int CreatePath();

    /// 1 when `folder` lies in a folder the operating system's packages own, where a product
    /// tree must not be created: /usr, /lib, /lib32, /lib64, /libx32, /bin, /sbin, /etc,
    /// /boot, /proc, /sys, /dev, /run, /var/lib, /snap, /nix/store, or the root folder itself.
    /// Checked on the text (no symlink resolution). A null or empty folder gives 0.
    static int IsSystemFolder(const char* folder);

    ///@{
    /// The folder paths, each ending in '/', laid out as the table in the file description shows.
    CString m_strAppPath;
    CString m_strFmtPath;
    CString m_strDrvPath;
    CString m_strLibPath;
    CString m_strRptPath;
    CString m_strProfilePath;
    CString m_strConfigPath;
    CString m_strChartPath;
    CString m_strTemplatePath;
    CString m_strPrinterPath;
    CString m_strDebugPath;
    CString m_strInputPath;
    CString m_strInputCMYKPath;
    CString m_strMonitorPath;
    CString m_strOutputPath;
    CString m_strCurvePath;
    CString m_strNameColorPath;
    CString m_strChartLinePath;
    CString m_strChartICCPath;
    CString m_strChartProofPath;
    ///@}
};

/// The library's folder tree (constructed at load, filled by the start-up).
KXBASE_API extern CAppPath g_AppPath;

/// Name of the environment variable that names the product folder at start-up.
#define KXBASE_PRODUCT_DIR_ENV "KXBASE_PRODUCT_DIR"

/// One sentence saying where the start-up put the product folder and whether it created the
/// tree (for diagnostics, e.g. "kxbase info"). Never null; empty before start-up.
KXBASE_API const char* KxProductTreeNote();
