#include "panels/picture/panel_colours.h"

#include "language/association_set.h"
#include "options/colours.h"

unsigned char naturalColour(const entry& item) {
  if (item.tagged) return colourOf(Colour::Tagged);
  const unsigned char base = colourOf(item.isDirectory() ? Colour::Directories : Colour::Panel);
  AssociationSets& sets = associationSets();
  const Westring* phrase =
      item.isDirectory() ? sets.directoryColours.find(&item) : sets.fileColours.find(&item);
  return phrase ? colourFromText(phrase->data(), base) : base;
}

unsigned char barColour(const entry& item) {
  if (item.tagged) return colourOf(Colour::HighlightTagged);
  return colourOf(item.isDirectory() ? Colour::DirectoryHigh : Colour::Highlight);
}
