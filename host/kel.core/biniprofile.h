// biniprofile.h
// A profile kept in an ini file that people edit too.
#pragma once

#include <memory>
#include <vector>

#include "bsmartobj.h"
#include "iprofile.h"

// The file is UTF-8, with or without byte order mark, with any line ends: lines `key=value`, sections `[name]`,
// comments from a ';' or '#' at a line's start, empty lines. Keys and sections are compared without regard to the case
// of A to Z. Keys before the first section are the root's, and a new profile is at the root. A section may be opened
// several times, a key occurs once in it.
//
// A write changes the text behind the key in its one line, or adds a line at the end of the key's section, and leaves
// every other byte of the file as it is, comments included. What others have changed in the file in the meantime stays
// and is read from then on. The file is replaced as a whole: a crash while saving leaves the old file or the new one. A
// write that changes nothing does not touch the file. A link to a file stays a link. Writers of one file, in any number
// of processes, write one after the other; each waits for the others for up to five seconds. [host thread]
class KEL_CORE_API BIniProfile : public BSmartObj, public IProfile {
 public:
  // Reads the file. Throws BError eProfileNotReadable (file, reason), or eProfileMalformed (file, line number, reason)
  // for a file that is not as described above.
  explicit BIniProfile(const WString& file_name);
  ~BIniProfile() override;
  BIniProfile(const BIniProfile&) = delete;
  BIniProfile& operator=(const BIniProfile&) = delete;

  bool ReadString(const WString& key, WString& value, const WString& default_value = {}) const override;
  bool ReadInt(const WString& key, int& value, int default_value, int min, int max) const override;
  bool ReadDouble(const WString& key, double& value, double default_value) const override;
  bool ReadBool(const WString& key, bool& value, bool default_value) const override;
  // Refused, with a complaint and nothing changed: texts with line breaks or zeros, and keys that a file cannot hold.
  // Refused in the same way: what would make the file too large. When the file cannot be written, the change is tried
  // again with the next write.
  bool Write(const WString& key, const WString& value) override;

  // Where reads and writes go from now on: the root's keys, or those of a section. A section that is not there has no
  // keys; a write makes it. An empty name is the root.
  void GoToRoot();
  void GoToSection(const WString& section);

  virtual const WString& FileName() const;  // as given to the constructor
  virtual const WString& Name() const;      // the file's name without folder and ending

  // Values that could not be used and writes that could not be saved: one sentence each, with file and line where there
  // is one, in the order in which they came up, none twice.
  const std::vector<WString>& Complaints() const;

  WString ArchiveName() const override;
  WString Properties() const override;

 private:
  struct Content;
  std::unique_ptr<Content> m_content;
};
