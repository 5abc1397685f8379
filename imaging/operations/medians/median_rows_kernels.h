// The loops of the medians by row, to be included within a namespace: see foundation/support/cpu.h.
// Neighbouring samples stand side by side in vectors, and exchanges put them in order.

#ifdef __AVX2__

using Register = __m256i;

static inline Register LoadRegister(const void* from) {
  return _mm256_loadu_si256(static_cast<const Register*>(from));
}

static inline void StoreRegister(void* to, Register value) {
  _mm256_storeu_si256(static_cast<Register*>(to), value);
}

static inline Register Xor(Register a, Register b) { return _mm256_xor_si256(a, b); }
static inline Register And(Register a, Register b) { return _mm256_and_si256(a, b); }
static inline Register Filled(uint8_t v) { return _mm256_set1_epi8(static_cast<char>(v)); }
static inline Register Filled(uint16_t v) { return _mm256_set1_epi16(static_cast<short>(v)); }
static inline Register Subtract(Register a, Register b, uint8_t) { return _mm256_sub_epi8(a, b); }
static inline Register Subtract(Register a, Register b, uint16_t) { return _mm256_sub_epi16(a, b); }

// All bits of the lanes that are, compared as signed.
static inline Register IsGreater(Register a, Register b, uint8_t) {
  return _mm256_cmpgt_epi8(a, b);
}

static inline Register IsGreater(Register a, Register b, uint16_t) {
  return _mm256_cmpgt_epi16(a, b);
}

#else

using Register = __m128i;

static inline Register LoadRegister(const void* from) {
  return _mm_loadu_si128(static_cast<const Register*>(from));
}

static inline void StoreRegister(void* to, Register value) {
  _mm_storeu_si128(static_cast<Register*>(to), value);
}

static inline Register Xor(Register a, Register b) { return _mm_xor_si128(a, b); }
static inline Register And(Register a, Register b) { return _mm_and_si128(a, b); }
static inline Register Filled(uint8_t v) { return _mm_set1_epi8(static_cast<char>(v)); }
static inline Register Filled(uint16_t v) { return _mm_set1_epi16(static_cast<short>(v)); }
static inline Register Subtract(Register a, Register b, uint8_t) { return _mm_sub_epi8(a, b); }
static inline Register Subtract(Register a, Register b, uint16_t) { return _mm_sub_epi16(a, b); }
static inline Register IsGreater(Register a, Register b, uint8_t) { return _mm_cmpgt_epi8(a, b); }
static inline Register IsGreater(Register a, Register b, uint16_t) { return _mm_cmpgt_epi16(a, b); }

#endif

// As many samples as a register holds.
template <class T>
struct Vector {
  static constexpr size_t kSamples = sizeof(Register) / sizeof(T);

  Register lanes;
};

using Bytes = Vector<uint8_t>;
using Words = Vector<uint16_t>;

// Plain is what images hold. SSE2 compares words only as signed ones: between Load and Store they
// may stand for others of the same order.
#ifdef __AVX2__

static inline Bytes Min(Bytes a, Bytes b) { return {_mm256_min_epu8(a.lanes, b.lanes)}; }
static inline Bytes Max(Bytes a, Bytes b) { return {_mm256_max_epu8(a.lanes, b.lanes)}; }
static inline Words Min(Words a, Words b) { return {_mm256_min_epu16(a.lanes, b.lanes)}; }
static inline Words Max(Words a, Words b) { return {_mm256_max_epu16(a.lanes, b.lanes)}; }
static inline Register FromPlain(Register lanes, uint16_t) { return lanes; }
static inline Register ToPlain(Register lanes, uint16_t) { return lanes; }

#else

static inline Bytes Min(Bytes a, Bytes b) { return {_mm_min_epu8(a.lanes, b.lanes)}; }
static inline Bytes Max(Bytes a, Bytes b) { return {_mm_max_epu8(a.lanes, b.lanes)}; }
static inline Words Min(Words a, Words b) { return {_mm_min_epi16(a.lanes, b.lanes)}; }
static inline Words Max(Words a, Words b) { return {_mm_max_epi16(a.lanes, b.lanes)}; }

static inline Register FromPlain(Register lanes, uint16_t) {
  return _mm_xor_si128(lanes, _mm_set1_epi16(INT16_MIN));
}

static inline Register ToPlain(Register lanes, uint16_t) {
  return _mm_xor_si128(lanes, _mm_set1_epi16(INT16_MIN));
}

#endif

static inline Register FromPlain(Register lanes, uint8_t) { return lanes; }
static inline Register ToPlain(Register lanes, uint8_t) { return lanes; }

template <class T>
static inline Vector<T> Load(const T* from) {
  return {LoadRegister(from)};
}

template <class T>
static inline void Store(T* to, Vector<T> vector) {
  StoreRegister(to, vector.lanes);
}

// Both touch no more than `samples`, which are fewer than a vector in narrow images.
template <class T>
static inline Vector<T> LoadPlain(const T* from, size_t samples) {
  if (samples == Vector<T>::kSamples) return {FromPlain(LoadRegister(from), T{})};
  T some[Vector<T>::kSamples] = {};
  std::memcpy(some, from, samples * sizeof(T));
  return {FromPlain(LoadRegister(some), T{})};
}

template <class T>
static inline void StorePlain(T* to, Vector<T> vector, size_t samples) {
  const Register plain = ToPlain(vector.lanes, T{});
  if (samples == Vector<T>::kSamples) {
    StoreRegister(to, plain);
    return;
  }
  T some[Vector<T>::kSamples];
  StoreRegister(some, plain);
  std::memcpy(to, some, samples * sizeof(T));
}

// Calls with the first sample of each vector and how many it has: fewer than a vector only if all
// are fewer. The last vector may repeat some of the one before.
template <class T, class Body>
static inline void ForEachVector(size_t count, Body body) {
  constexpr size_t kSamples = Vector<T>::kSamples;
  size_t x = 0;
  for (; x + kSamples <= count; x += kSamples) body(x, kSamples);
  if (x == count) return;
  if (count < kSamples) {
    body(0, count);
  } else {
    body(count - kSamples, kSamples);
  }
}

// Exchanges the two where they stand in the wrong order.
template <class V>
static inline void Order(V& low, V& high) {
  const V lower = Min(low, high);
  high = Max(low, high);
  low = lower;
}

template <class V>
static inline void Sort(V (&v)[3]) {
  Order(v[0], v[2]);
  Order(v[0], v[1]);
  Order(v[1], v[2]);
}

template <class V>
static inline void Sort(V (&v)[5]) {
  Order(v[0], v[3]);
  Order(v[1], v[4]);
  Order(v[0], v[2]);
  Order(v[1], v[3]);
  Order(v[0], v[1]);
  Order(v[2], v[4]);
  Order(v[1], v[2]);
  Order(v[3], v[4]);
  Order(v[2], v[3]);
}

template <class V>
static inline V Median3(V a, V b, V c) {
  return Max(Min(a, b), Min(Max(a, b), c));
}

template <class V>
static inline V Median5(V a, V b, V c, V d, V e) {
  // Neither the least nor the greatest of four is the median of the five.
  return Median3(Max(Min(a, b), Min(c, d)), Min(Max(a, b), Max(c, d)), e);
}

// The columns of a window's rows, each in order: one row of all least samples, one of the next and
// so on, with the outermost columns repeated at both ends.
template <class T, size_t kSize>
struct SortedColumns {
  SortedColumns(const T* const* rows, size_t count, size_t distance, T* room)
      : length(MedianColumnsLength<T>(count)), first(room + kMedianMargin / sizeof(T)) {
    const T* row[kSize];  // which no store can change
    for (size_t i = 0; i < kSize; ++i) row[i] = rows[i];
    ForEachVector<T>(count, [&](size_t x, size_t samples) {
      Vector<T> v[kSize];
      for (size_t i = 0; i < kSize; ++i) v[i] = LoadPlain(row[i] + x, samples);
      Sort(v);
      for (size_t i = 0; i < kSize; ++i) Store(first + i * length + x, v[i]);
    });
    for (size_t i = 0; i < kSize; ++i) Extend(first + i * length, count, kSize / 2 * distance,
                                              distance);
  }

  static void Extend(T* row, size_t count, size_t margin, size_t distance) {
    for (size_t i = 1; i <= margin; ++i) *(row - i) = *(row - i + distance);
    for (size_t i = count; i < count + margin; ++i) row[i] = row[i - distance];
  }

  size_t length;
  T* first;  // of the least
};

template <class T>
void Row3x3(const T* const* rows, T* target, size_t count, size_t distance, T* room) {
  const SortedColumns<T, 3> columns(rows, count, distance, room);
  const T* const low = columns.first - distance;
  const T* const middle = low + columns.length;
  const T* const high = middle + columns.length;
  const size_t second = distance;
  const size_t third = 2 * distance;
  ForEachVector<T>(count, [&](size_t x, size_t samples) {
    const Vector<T> greatestLow = Max(Max(Load(low + x), Load(low + second + x)),
                                      Load(low + third + x));
    const Vector<T> median = Median3(Load(middle + x), Load(middle + second + x),
                                     Load(middle + third + x));
    const Vector<T> leastHigh = Min(Min(Load(high + x), Load(high + second + x)),
                                    Load(high + third + x));
    StorePlain(target + x, Median3(greatestLow, median, leastHigh), samples);
  });
}

// The samples of the same rank in five neighbouring columns, in order.
template <class T>
struct Rank {
  Rank(const T* samples, size_t distance) {
    for (size_t i = 0; i < 5; ++i) v[i] = Load(samples + i * distance);
    Sort(v);
  }

  Vector<T> v[5];
};

// With the columns in order and then the rows, a sample is at least as great as all that stand left
// of it and above it. Three diagonals remain that can hold the median of the 25: of the first only
// its greatest can be it, of the second its median, and of the third its least.
template <class T>
void Row5x5(const T* const* rows, T* target, size_t count, size_t distance, T* room) {
  const SortedColumns<T, 5> columns(rows, count, distance, room);
  const T* const low = columns.first - 2 * distance;
  const size_t length = columns.length;
  ForEachVector<T>(count, [&](size_t x, size_t samples) {
    const Rank<T> a(low + x, distance);
    const Rank<T> b(low + length + x, distance);
    const Rank<T> c(low + 2 * length + x, distance);
    const Rank<T> d(low + 3 * length + x, distance);
    const Rank<T> e(low + 4 * length + x, distance);
    const Vector<T> first = Max(Max(a.v[3], b.v[2]), Max(c.v[1], d.v[0]));
    const Vector<T> second = Median5(a.v[4], b.v[3], c.v[2], d.v[1], e.v[0]);
    const Vector<T> third = Min(Min(b.v[4], c.v[3]), Min(d.v[2], e.v[1]));
    StorePlain(target + x, Median3(first, second, third), samples);
  });
}

template <class T>
void RowCross(const T* above, const T* row, const T* below, T* target, size_t count,
              size_t distance) {
  if (count <= 2 * distance) return;
  const T* const left = row;
  const T* const right = row + 2 * distance;
  row += distance;
  above += distance;
  below += distance;
  target += distance;
  ForEachVector<T>(count - 2 * distance, [&](size_t x, size_t samples) {
    const Vector<T> median = Median5(LoadPlain(above + x, samples), LoadPlain(left + x, samples),
                                     LoadPlain(row + x, samples), LoadPlain(right + x, samples),
                                     LoadPlain(below + x, samples));
    StorePlain(target + x, median, samples);
  });
}

// Bit by bit from the highest, the greatest value that no more than `rank` samples of the window
// lie below. Samples and value have their highest bit turned over, for vectors compare as signed;
// the count is signed too and begins below zero by one more than may lie below.
template <class T>
void RowBySearch(const T* const* rows, const MedianWindowSize& window, T* target, size_t count,
                 size_t distance) {
  constexpr T kHighest = static_cast<T>(T{1} << (8 * sizeof(T) - 1));
  const T rank = static_cast<T>(window.columns * window.rows / 2);
  ForEachVector<T>(count, [&](size_t x, size_t samples) {
    Register value = Filled(kHighest);
    for (T bit = kHighest; bit != 0; bit >>= 1) {
      const Register candidate = Xor(value, Filled(bit));
      Register below = Filled(static_cast<T>(~rank));
      for (size_t i = 0; i < window.rows; ++i) {
        const T* sample = rows[i] + x;
        for (size_t j = 0; j < window.columns; ++j, sample += distance) {
          below = Subtract(below, IsGreater(candidate, LoadRegister(sample), T{}), T{});
        }
      }
      value = Xor(value, And(IsGreater(Filled(T{0}), below, T{}), Filled(bit)));
    }
    value = Xor(value, Filled(kHighest));
    T some[Vector<T>::kSamples];
    StoreRegister(some, value);
    std::memcpy(target + x, some, samples * sizeof(T));
  });
}

template void Row3x3(const uint8_t* const*, uint8_t*, size_t, size_t, uint8_t*);
template void Row3x3(const uint16_t* const*, uint16_t*, size_t, size_t, uint16_t*);
template void Row5x5(const uint8_t* const*, uint8_t*, size_t, size_t, uint8_t*);
template void Row5x5(const uint16_t* const*, uint16_t*, size_t, size_t, uint16_t*);
template void RowCross(const uint8_t*, const uint8_t*, const uint8_t*, uint8_t*, size_t, size_t);
template void RowCross(const uint16_t*, const uint16_t*, const uint16_t*, uint16_t*, size_t,
                       size_t);
template void RowBySearch(const uint8_t* const*, const MedianWindowSize&, uint8_t*, size_t, size_t);
template void RowBySearch(const uint16_t* const*, const MedianWindowSize&, uint16_t*, size_t,
                          size_t);
