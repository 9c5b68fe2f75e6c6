#pragma once

/// Told about the advance of a long operation; the window paints and stays alive meanwhile.
class Progress {
 public:
  virtual ~Progress() = default;
  /// @param percent  0 to 100
  /// @return false when the user asks to stop; the operation then ends at its next safe place
  virtual bool Advance(int percent) = 0;
};

/// For operations that nobody watches.
class NoProgress : public Progress {
 public:
  bool Advance(int) override { return true; }
};
