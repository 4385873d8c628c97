#pragma once

/// Properties of concrete and reinforcement grades: built-in tables, and five user-defined grades of each that are kept
/// in a text file beside the program and come first. Stresses and moduli are in N/mm2.

#include "qvtools/platform/framework.h"

/// A grade of concrete; strengths and moduli in N/mm2.
struct Con_Prop {
  int code;     ///< 10 to 60 built-in; 65, 70, 75, 80, 85 user-defined
  float fc;     ///< design strength: axial compression
  float fcm;    ///< bending compression
  float ft;     ///< tension
  float fck;    ///< characteristic strength: axial compression
  float fcmk;   ///< bending compression
  float ftk;    ///< tension
  float Ec;     ///< elastic modulus
  float Gc;     ///< shear modulus; 0 for C10 and C15
  float nu;     ///< Poisson's ratio
  float alpha;  ///< thermal expansion, per degree
};

/// A grade of reinforcement; strengths and modulus in N/mm2.
struct Rein_Prop {
  int code;   ///< 1 to 4 built-in, 4 to 8 user-defined
  float fy;   ///< design strength: tension
  float fy2;  ///< compression
  float fyk;  ///< characteristic strength
  float Es;   ///< elastic modulus
};

/// The user-defined grades. Slots 1 to 5 stand at indices 0 to 4.
///
/// They are kept in UserOpt.dat, in the directory that `G_strExePath` names: a title line, a line "SLOT,UC-SLOT," with
/// fc to alpha for each concrete slot, a title line, a line "SLOT,UG-SLOT," with fy to Es for each reinforcement slot.
/// Lines that begin with "##" are comments. Numbers have three decimals, so a saved alpha (1e-5, say) is 0.000 and
/// reads back as 0.
class QV_API CUserOpt {
 public:
  /// The slots.
  Con_Prop m_Con[5];
  Rein_Prop m_Rein[5];

  /// Every slot a copy of grade C20, or of reinforcement grade 2, code included.
  CUserOpt();

  /// Copies a slot, for the codes 65, 70, 75, 80 and 85, and 4 to 8. Returns 1, or 0 for any other code.
  int GetRc(int code, Con_Prop* out) const;
  int GetRein(int code, Rein_Prop* out) const;

  /// Reads the file; codes stay as they are, missing lines and fields are 0. Returns 1; 0, with the grades as they
  /// were, without the file, and, after report 301, when the disk fails or memory runs out.
  int ReadData();
  /// Writes the file. Returns 1; 0 when it cannot be written, and an old file is then as it was.
  int SaveData() const;
};

/// The grades that the look-ups below use, and whether their file was read: the first look-up does, once, and counts
/// a missing file as read. Threads may look up at once; a host that changes the grades does so while none does.
extern QV_API CUserOpt G_UserOpt;
extern QV_API int G_bUserOptRead;

/// Copies the properties of a grade, user-defined grades first. Returns 1; 0, with `out` untouched, for a code that is
/// in no table.
/// Quirk: reinforcement code 4 is always user slot 1, never the built-in grade 4; host programs store it as such.
QV_API int get_rc_property(int code, Con_Prop* out);
QV_API int get_rein_property(int code, Rein_Prop* out);

/// The display names of grades: C20, or UC-1 to UC-5 for codes from 65 on; 2, or UG-1 to UG-5 for codes from 4 on.
QV_API CString _HNT(int code);
QV_API CString _GJ(int code);
