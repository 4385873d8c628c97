#pragma once

/// Drawings of any release and program, read into flat documents: DXF as text of every release or binary, with every
/// kind of entity. What the nine flat kinds cannot express is made of what they can; what cannot be made is left out;
/// the report tells both.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "qvtools/dxf/model/document.h"
#include "qvtools/text/code_page.h"

namespace qv {

/// Units of length, by the numbers that headers give them ($INSUNITS).
enum class Unit : int {
  None = 0,
  Inch = 1,
  Foot = 2,
  Mile = 3,
  Millimetre = 4,
  Centimetre = 5,
  Metre = 6,
  Kilometre = 7
};

/// What is asked of an import.
struct ImportOptions {
  /// The sheet to read by its name, with its viewports drawn in place and to scale; empty for model space.
  std::string layout = {};
  /// The code page of the texts; what the file says, or looks like, when absent.
  std::optional<CodePage> encoding = {};
  /// How far a polyline may lie off the curve that it stands for, as a share of the curve's size.
  double tolerance = 1.0 / 2000;
  /// The unit to convert to; numbers stay as they are when it is `None` or the file's unit is not known.
  Unit unit = Unit::None;
  /// A unit that the header does not name is taken from $MEASUREMENT and the size of the drawing; told, since it may be
  /// wrong.
  bool guessUnit = false;
  /// Inserts become the entities of their blocks; else blocks stay blocks where they can.
  bool explode = false;
  /// At most as many records or inserts are made of one block reference, and dashes of one hatch; what needs more is
  /// left out and told.
  int mostOfReference = 500000;
  int mostOfHatch = 200000;
  /// Where the files of shapes (.shx) lie that the drawing names, each with a separator at its end.
  std::vector<std::string> shapeFolders = {};
};

/// What flat records cannot hold, for what draws them. A record's colour is the true colour noted for it, else its own
/// number, else (number `kByLayer`) the true colour or the number of its layer; its line weight is the one noted for
/// it, else its layer's. What a block hands on has been worked out.
struct DrawingNotes {
  /// What is noted of a layer.
  struct Layer {
    std::string name;      ///< as in the document
    std::string fullName;  ///< as in the file, UTF-8
    bool off = false;      ///< marked as off
    bool frozen = false;   ///< marked as frozen
    bool plotted = true;   ///< false when it is marked as not plotted
    int lineWeight = -3;   ///< hundredths of a millimetre; -3 the default
    int trueColor = -1;    ///< 0xRRGGBB; -1 none
  };
  /// What is noted of a record.
  struct Entity {
    const ACAD_ENTITY* record;  ///< in the document
    int lineWeight;             ///< hundredths of a millimetre; -1 the layer's, -3 the default
    int trueColor;              ///< 0xRRGGBB; -1 none
    std::string text;  ///< UTF-8, where the records hold other characters or several of them one text: of the first
  };
  std::vector<Layer> layers;     ///< in the order of the document's table
  std::vector<Entity> entities;  ///< only those that have something to note, in the order of their records' addresses
  std::string layout;            ///< the sheet that the document shows, UTF-8; empty for model space

  /// The notes of a record; null when there are none.
  QV_API const Entity* find(const ACAD_ENTITY* record) const;
};

/// What became of a file.
struct ImportReport {
  /// What became of one kind of entity.
  struct Kind {
    std::string name;     ///< as the file has it, "MTEXT"
    int taken = 0;        ///< as they were
    int converted = 0;    ///< into what `becomes` says
    int leftOut = 0;      ///< not in the document
    std::string becomes;  ///< the kinds of record, in words
    std::string reason;   ///< why the first was left out
    long line = 0;        ///< where the first that was left out, or else the first, begins; a byte in a binary file
  };
  /// Something that was mended, shortened or lost, and how often.
  struct Remark {
    std::string text;   ///< English
    int count = 0;      ///< how often
    long line = 0;      ///< of the first; 0 when it is at no line
    bool loss = false;  ///< the drawing does not show it as it should
  };
  std::vector<Kind> kinds;                    ///< in the order in which they come in the file
  std::vector<Remark> remarks;                ///< each once
  std::string release;                        ///< as the file names it ("AC1027"); empty when it does not
  bool binary = false;                        ///< a binary file
  CodePage encoding = CodePage::Windows1252;  ///< of the texts
  std::string encodingSource;                 ///< how the code page is known
  Unit unit = Unit::None;                     ///< the file's
  std::string unitSource;                     ///< how it is known
  double scale = 1;                           ///< by which lengths were multiplied
  double offset[2] = {0, 0};                  ///< what was taken off x and y, in the unit of the document
  std::string layout;                         ///< the sheet that was read; empty for model space
  std::vector<std::string> layouts;           ///< the file's sheets, UTF-8, with what they hold
  bool complete = true;                       ///< false when the file is broken off, at `brokenLine`
  long brokenLine = 0;                        ///< where it is broken off; 0 when it is whole
  DrawingNotes notes;                         ///< what flat records cannot hold

  /// One line: what was converted and left out; empty when everything was taken as it was.
  QV_API std::string summary() const;
  /// All of it, line by line.
  QV_API std::string text() const;
};

/// Reads a drawing of any form into a document, whose drawing it replaces; the document is in memory then. Returns 1,
/// or 0, the document as it was, when the file cannot be opened or is no drawing, when the options name a sheet that it
/// has not (`report.remarks` tells why), when `progress` (the share that has been read, 0 to 1) returns false, or when
/// memory runs out (report 301). What is broken in the file is passed over and told.
QV_API int Import(const char* path, DXF& document, const ImportOptions& options, ImportReport& report,
                  const std::function<bool(double share)>& progress = nullptr);

}  // namespace qv
