// What a thumbnail grid is made of, without a window.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "controls/thumbnail_cache.h"
#include "controls/thumbnail_layout.h"
#include "controls/thumbnail_selection.h"

namespace zyr {
namespace {

// Every point of the area lies in exactly one cell, and is found to be in that.
TEST(ThumbnailLayout, CellsFillTheAreaWhateverItsSize) {
  for (const RECT area : {RECT{5, 7, 105, 77}, RECT{0, 0, 7, 5}, RECT{3, 3, 5, 4}}) {
    const ThumbnailLayout layout = {3, 4, 1000};
    const size_t topRow = 5;
    for (POINT p = {area.left, area.top}; p.y < area.bottom; ++p.y) {
      for (p.x = area.left; p.x < area.right; ++p.x) {
        const std::optional<size_t> item = layout.ItemAt(p, topRow, area);
        ASSERT_TRUE(item && layout.InView(*item, topRow)) << p.x << ", " << p.y;
        const RECT cell = layout.CellOf(*item, topRow, area);
        ASSERT_TRUE(PtInRect(&cell, p)) << p.x << ", " << p.y << " in " << *item;
      }
    }
    EXPECT_FALSE(layout.ItemAt({area.right, area.top}, topRow, area));
    EXPECT_FALSE(layout.ItemAt({area.left, area.top - 1}, topRow, area));
  }
  EXPECT_FALSE((ThumbnailLayout{2, 2, 3}).ItemAt({9, 9}, 0, {0, 0, 10, 10}));  // no fourth item
  EXPECT_FALSE((ThumbnailLayout{2, 2, 3}).ItemAt({0, 0}, 0, {}));
}

// Two rows of three in view of
//   0 1 2
//   3 4 5
//   6 7
TEST(ThumbnailLayout, KeysLeadWhereTheEyeExpects) {
  const ThumbnailLayout layout = {2, 3, 8};
  const struct {
    GridMove move;
    std::vector<size_t> to;
  } rows[] = {{GridMove::kLeft, {0, 0, 1, 2, 3, 4, 5, 6}},
              {GridMove::kRight, {1, 2, 3, 4, 5, 6, 7, 7}},
              {GridMove::kUp, {0, 1, 2, 0, 1, 2, 3, 4}},
              {GridMove::kDown, {3, 4, 5, 6, 7, 7, 6, 7}},
              {GridMove::kPageUp, {0, 1, 2, 0, 1, 2, 0, 1}},
              {GridMove::kPageDown, {6, 7, 7, 6, 7, 7, 6, 7}},
              {GridMove::kFirst, {0, 0, 0, 0, 0, 0, 0, 0}},
              {GridMove::kLast, {7, 7, 7, 7, 7, 7, 7, 7}}};
  for (const auto& row : rows) {
    for (size_t item = 0; item < layout.count; ++item) {
      EXPECT_EQ(layout.ItemAfter(item, row.move), row.to[item])
          << item << " by " << static_cast<int>(row.move);
    }
  }
}

TEST(ThumbnailLayout, ViewMovesByRowsAndIsNamed) {
  const ThumbnailLayout layout = {2, 3, 8};
  EXPECT_EQ(layout.LastTopRow(), 1u);
  EXPECT_EQ(layout.TopRowToShow(2, 1), 0u);
  EXPECT_EQ(layout.TopRowToShow(5, 0), 0u);
  EXPECT_EQ(layout.TopRowToShow(6, 0), 1u);
  EXPECT_EQ((ThumbnailLayout{2, 3, 6}).LastTopRow(), 0u);
  EXPECT_EQ((ThumbnailLayout{9, 9, 0}).LastTopRow(), 0u);

  EXPECT_EQ(layout.Caption(0), "Items 1 through 6 of 8");
  EXPECT_EQ(layout.Caption(1), "Items 4 through 8 of 8");
  EXPECT_EQ((ThumbnailLayout{1, 1, 8}).Caption(4), "Item 5 of 8");
  EXPECT_EQ((ThumbnailLayout{2, 3, 1}).Caption(0), "Item 1 of 1");
  EXPECT_EQ((ThumbnailLayout{2, 3, 0}).Caption(0), "<No Images>");
}

TEST(ThumbnailLayout, PicturesKeepTheirShape) {
  const RECT box = {10, 20, 110, 70};  // 100 x 50
  const auto fitted = [&](LONG width, LONG height) {
    const RECT r = FitInto(box, {width, height});
    return std::vector<LONG>{r.left, r.top, r.right - r.left, r.bottom - r.top};
  };
  EXPECT_EQ(fitted(400, 100), (std::vector<LONG>{10, 32, 100, 25}));
  EXPECT_EQ(fitted(30, 60), (std::vector<LONG>{47, 20, 25, 50}));
  EXPECT_EQ(fitted(10, 10), (std::vector<LONG>{35, 20, 50, 50}));
  EXPECT_EQ(fitted(37, 49), (std::vector<LONG>{41, 20, 37, 49}));  // not for one line
  EXPECT_EQ(fitted(100000, 1), (std::vector<LONG>{10, 44, 100, 1}));
}

std::vector<size_t> SelectedAfter(ThumbnailSelection& selection, const SelectionChanges& changes) {
  for (const SelectionChange& change : changes) EXPECT_TRUE(selection.Apply(change));
  std::vector<size_t> selected;
  for (size_t item = 0; item < 20; ++item) {
    if (selection.IsSelected(item)) selected.push_back(item);
  }
  return selected;
}

TEST(ThumbnailSelection, FollowsMouseAndKeyboard) {
  using Items = std::vector<size_t>;
  ThumbnailSelection selection;
  selection.Reset({false, true, false, false, false, false});
  EXPECT_EQ(SelectedAfter(selection, selection.SelectOnly(3)), (Items{3}));
  EXPECT_EQ(SelectedAfter(selection, selection.Toggle(5)), (Items{3, 5}));
  EXPECT_EQ(SelectedAfter(selection, selection.SelectTo(4, true)), (Items{3, 4, 5}));
  EXPECT_EQ(SelectedAfter(selection, selection.SelectTo(1, false)), (Items{1, 2, 3, 4, 5}));
  EXPECT_EQ(SelectedAfter(selection, selection.SelectTo(4, false)), (Items{4, 5}));
  EXPECT_EQ(selection.focus(), 4u);
  EXPECT_EQ(SelectedAfter(selection, selection.Toggle(5)), (Items{4}));
  selection.MoveFocus(0);
  EXPECT_EQ(SelectedAfter(selection, selection.SelectTo(1, false)), (Items{0, 1}));
  EXPECT_EQ(selection.SelectTo(1, false), SelectionChanges{});
  EXPECT_EQ(SelectedAfter(selection, selection.SelectAll()), (Items{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(SelectedAfter(selection, selection.SelectNone()), Items{});

  selection.MoveFocus(5);
  const SelectionChanges outlived = selection.SelectAll();
  selection.Reset({true, false});
  EXPECT_EQ(selection.focus(), 1u);
  EXPECT_FALSE(selection.Apply(outlived[0]));
  EXPECT_FALSE(selection.Apply(outlived[5]));
  selection.Reset({});
  selection.MoveFocus(3);
  EXPECT_EQ(selection.focus(), 0u);
  EXPECT_EQ(selection.Toggle(0), SelectionChanges{});
}

TEST(ThumbnailCache, AsksForWhatIsMissingFirstAndForgetsWhatIsFar) {
  const SIZE size = {60, 80};
  ThumbnailCache cache;
  std::vector<size_t> order;
  while (const auto item = cache.NextWanted(10, 14, 12, size)) {
    order.push_back(*item);
    cache.Store(*item, nullptr, size);
  }
  EXPECT_EQ(order, (std::vector<size_t>{12, 11, 13, 10}));
  EXPECT_EQ(cache.NextWanted(10, 14, 12, {60, 81}), 12u);
  cache.Outdate();
  EXPECT_EQ(cache.NextWanted(10, 14, 11, size), 11u);
  EXPECT_EQ(cache.NextWanted(10, 15, 11, size), 14u);

  cache.Trim(10, 12, 2);
  EXPECT_EQ(cache.size(), 2u);
  EXPECT_TRUE(cache.Find(10) != nullptr && cache.Find(11) != nullptr);
}

}  // namespace
}  // namespace zyr
