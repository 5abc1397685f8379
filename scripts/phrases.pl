#!/usr/bin/env perl
# The texts that pass through the phrase table, and the phrase files that translate them.
use strict;
use warnings;
use utf8;
use Encode qw(decode encode);
use File::Basename qw(basename dirname);
use File::Find;
use File::Path qw(make_path);
use File::Temp qw(tempdir);

my $usage = <<'TEXT';
Usage: scripts/phrases.pl COMMAND

  collect [FILE]     the catalogue: every text of the module that is translated, sorted, one a line
  check [FILE...]    holds phrase files (those of resources/languages) against the catalogue; exits with 1 on faults
  template           a phrase file to be translated: each English text as its own translation, by source file
  test-language      a phrase file of English with accents, half as long again, for looking at layouts
  install DIR [FILE...]
                     puts phrase files (those of resources/languages) into DIR as the module reads them: Windows-1252,
                     CRLF

Phrase files are kept in UTF-8: on the first line the language's name, below it lines of "English" = "Translation",
blank lines, and comments behind a semicolon. A line feed is written \n; a quotation mark cannot stand in a phrase.
TEXT

my $root = dirname(dirname(__FILE__));

# Fewer than these cannot be all.
my $least_phrases = 400;

# What becomes part of the module.
my @folders = qw(acquire controls foundation hardware imaging module platform settings twain);

# The functions that look their literal up, and which argument it is.
my @keywords = qw(GetPhrase GetFormatPhrase PhraseKey SetError:2 ReportImageError:2);

# Words that are the same in every language, beside those in capitals only.
my %international = map { $_ => 1 } qw(OK Gamma RedGreenBlue GreenRedBlue Laplace);

# The languages that the system comes with.
my @languages = qw(French German Italian Portuguese Spanish);

# Longest line of a phrase file; the module reads 2,047 bytes at most.
my $longest_line = 2000;

my @faults;
sub fault { push @faults, join '', @_ }
sub fault_at { my ($place) = shift; fault "$place: ", @_ }

sub read_text {
  my ($path) = @_;
  open my $in, '<', $path or die "$path: $!\n";
  local $/;
  my $bytes = <$in>;
  return eval { decode('UTF-8', $bytes, Encode::FB_CROAK) } // die "$path: not UTF-8\n";
}

sub write_bytes {
  my ($path, $bytes) = @_;
  open my $out, '>', $path or die "$path: $!\n";
  print $out $bytes;
  close $out or die "$path: $!\n";
}

sub one_line { return $_[0] =~ s/\n/\\n/gr }

# ---- printf directives, as the module understands them ----

my $directive = qr/%(?:%|[-+ #0]*(?<width>\*|\d{0,4})(?<precision>(?:\.(?:\*|\d{0,4}))?)
                   (?<length>hh?|ll?|[jztL])?(?<conversion>[cspaAeEfFgGdiuoxX]))/x;

# What the arguments are taken as, in order; and the marks of directives that are none, for which the module would pass
# a translation over.
sub taken_arguments {
  my ($format) = @_;
  my @taken;
  while ($format =~ /$directive/g) {
    next unless defined $+{conversion};
    push @taken, join '', '%', $+{width} eq '*' ? '*' : '', $+{precision} eq '.*' ? '.*' : '', $+{length} // '',
      $+{conversion};
  }
  push @taken, ('a lone %') x ($format =~ s/$directive//gr =~ tr/%//);
  return join ' ', @taken;
}

# Numbers, blanks and directives have no translation.
sub is_translatable { return $_[0] =~ s/$directive//gr =~ /\p{L}/ }

# ---- collection: C++ ----

sub source_files {
  my @files;
  my $wanted = sub { push @files, s{^\Q$root\E/}{}r if /\.(?:cpp|h)$/ };
  find({no_chdir => 1, wanted => $wanted}, map { "$root/$_" } @folders);
  return sort @files;
}

# xgettext knows neither bytes beyond ASCII, of which the code page's stand here as "\xB0", nor digit separators.
sub for_xgettext {
  my ($text) = @_;
  $text =~ s/\\x([89A-Fa-f][0-9A-Fa-f])(?![0-9A-Fa-f])/decode('cp1252', chr hex $1)/ge;
  $text =~ s/\b(\d[\da-fxA-FX]*)'(?=[\da-fA-F])/$1/g;
  return $text;
}

sub unescape {
  my ($text) = @_;
  my %meaning = (n => "\n", t => "\t", r => "\r");
  return $text =~ s/\\(.)/$meaning{$1} \/\/ $1/ger;
}

# Adds to %$places: phrase => [where it stands].
sub collect_from_sources {
  my ($places) = @_;
  my $copies = tempdir(CLEANUP => 1);
  my @files = source_files();
  for my $file (@files) {
    make_path(dirname("$copies/$file"));
    write_bytes("$copies/$file", encode('UTF-8', for_xgettext(read_text("$root/$file"))));
  }
  write_bytes("$copies/files", join("\n", @files) . "\n");
  my $keywords = join ' ', map { "-k$_" } @keywords;
  my $catalogue = `cd '$copies' && LC_ALL=C.UTF-8 xgettext --c++ --from-code=UTF-8 -k $keywords --no-wrap \\
      --sort-by-file -o - -f files 2>messages`;
  die "xgettext failed (Debian package gettext)\n", read_text("$copies/messages") if $?;
  fault $_ for grep { /./ } split /\n/, read_text("$copies/messages");

  for my $entry (split /\n\n+/, decode('UTF-8', $catalogue)) {
    my ($id) = $entry =~ /^msgid ((?:".*"\n)+)/m or next;
    my $phrase = unescape(join '', $id =~ /^"(.*)"$/mg);
    my @where = map { split ' ' } $entry =~ /^#: (.*)$/mg;
    push @{$places->{$phrase}}, @where if $phrase ne '';
  }
}

# ---- collection: dialog templates ----

my $with_text =
  qr/^(?:[LCR]TEXT|(?:DEF)?PUSHBUTTON|(?:AUTO)?(?:CHECKBOX|RADIOBUTTON|3STATE)|GROUPBOX|STATE3|CONTROL|CAPTION)$/;
my $without_text = qr/^(?:EDITTEXT|COMBOBOX|LISTBOX|SCROLLBAR|ICON|STYLE|EXSTYLE|FONT|LANGUAGE|CLASS|MENU)$/;

sub collect_from_dialog {
  my ($places, $file, $number, $text) = @_;
  $text =~ s/"((?:[^"]|"")*)"/'"' . ($1 =~ s{,}{\x01}gr) . '"'/ge;  # commas in texts tell nothing of the statement
  for my $line (split /\n/, $text) {
    my $place = "$file:" . $number++;
    next if $line =~ /^\s*(?:BEGIN|END|\{|\})?\s*$/ || $line =~ /^\s+[^A-Z\s]/;
    my ($statement) = $line =~ /^\s*([A-Z0-9]+)\b/;
    if (!defined $statement || $statement !~ $with_text && $statement !~ $without_text) {
      fault_at $place, "not understood: $line";
    } elsif ($statement =~ $with_text) {
      if ($line =~ /^\s*$statement\s+"((?:[^"]|"")*)"/) {
        push @{$places->{unescape($1 =~ s{""}{"}gr =~ s{\x01}{,}gr)}}, $place;
      } else {
        fault_at $place, "$statement without its text on the line";
      }
    }
  }
}

sub collect_from_resources {
  my ($places) = @_;
  my $dialogs = 0;
  for my $path (sort glob "$root/resources/*.rc") {
    my $file = $path =~ s{^\Q$root\E/}{}r;
    my $text = read_text($path);
    $text =~ s{/\*.*?\*/}{$& =~ s/[^\n]//gr}gse;
    $text =~ s{^((?:[^"\n]|"(?:[^"\n]|"")*")*?)//.*$}{$1}gm;
    fault_at $file, "has a $1, which is not read for phrases"
      if $text =~ /^\s*(?:\w+\s+)?(MENU(?:EX)?|STRINGTABLE|MESSAGETABLE)\b(?!\s+\w+\s*$)/m;
    while ($text =~ /^[^\S\n]*\w+\s+DIALOG(?:EX)?\b[^\n]*\n(.*?^\s*(?:END|\})\s*$)/gms) {
      my ($dialog, $start) = ($1, $-[1]);
      ++$dialogs;
      collect_from_dialog($places, $file, 1 + (substr($text, 0, $start) =~ tr/\n//), $dialog);
    }
  }
  fault 'resources: no dialog was found' unless $dialogs;
}

# phrase => [where it stands]
sub collect {
  my %places;
  collect_from_sources(\%places);
  collect_from_resources(\%places);
  for my $phrase (keys %places) {
    if (!is_translatable($phrase)) {
      delete $places{$phrase};
    } elsif ($phrase =~ /(["\\\t\r])/) {
      fault_at $places{$phrase}[0], 'a phrase file cannot hold a text with ', one_line($phrase),
        $1 eq '"' ? ': a quotation mark' : ': a control character or backslash';
    }
  }
  my $count = keys %places;
  fault "only $count phrases were found, fewer than $least_phrases" if $count < $least_phrases;
  return \%places;
}

# ---- phrase files ----

# The English texts and translations of a file, in order: [line number, English, translation].
sub read_phrases {
  my ($path) = @_;
  my ($name, @lines) = split /\r?\n/, read_text($path), -1;
  fault_at "$path:1", 'the language has no name of one word' unless ($name // '') =~ /^[^\s";]+$/;
  my ($number, @phrases) = 1;
  for my $line (@lines) {
    my $place = "$path:" . ++$number;
    my $bytes = eval { encode('cp1252', my $copy = $line, Encode::FB_CROAK) };
    if (!defined $bytes) {
      my @strange = grep { !defined eval { encode('cp1252', my $copy = $_, Encode::FB_CROAK) } } split //, $line;
      fault_at $place, 'outside Windows-1252: ', join ' ', map { sprintf '%s (U+%04X)', $_, ord } @strange;
    } elsif (length $bytes > $longest_line) {
      fault_at $place, 'longer than ', $longest_line, ' bytes';
    }
    next if $line =~ /^\s*(?:;.*)?$/;
    if ($line =~ /^"([^"]+)" = "([^"]+)"$/) {
      push @phrases, [$number, map { s/\\n/\n/gr } $1, $2];
    } else {
      fault_at $place, 'not a line of the form "English" = "Translation"';
    }
  }
  return ($name, @phrases);
}

sub mnemonics { return scalar(() = $_[0] =~ /(?<!&)&(?=[^\s&])/g) }

# What must be the same in a text and its translation, and how it is found.
my @held_alike = (
  ['the format directives', \&taken_arguments],
  ['the colon at the end', sub { $_[0] =~ /:\s*$/ ? ':' : '' }],
  ['the dots at the end', sub { $_[0] =~ /\.\.\.\s*$/ ? '...' : '' }],
  ['the blanks in front', sub { $_[0] =~ /^(\s*)/; one_line($1) }],
  ['the blanks at the end', sub { $_[0] =~ /(\s*)$/; one_line($1) }],
  ['the keys marked by &', \&mnemonics],
);

sub check_translation {
  my ($place, $english, $translation) = @_;
  for my $rule (@held_alike) {
    my ($what, $of) = @$rule;
    my ($wanted, $found) = ($of->($english), $of->($translation));
    fault_at $place, "$what: '$found' instead of '$wanted'" if $found ne $wanted;
  }
  my ($wanted, $found) = map { tr/\n// } $english, $translation;
  fault_at $place, "$found line feeds instead of $wanted" if abs($wanted - $found) > 1;
  print "$place: warning: the same as in English\n"
    if $translation eq $english && !$international{$english} && $english =~ s/$directive//gr =~ /\p{Ll}/;
}

sub check_file {
  my ($places, $path) = @_;
  my ($name, @phrases) = read_phrases($path);
  my %seen;
  for my $phrase (@phrases) {
    my ($number, $english, $translation) = @$phrase;
    my $place = "$path:$number";
    fault_at $place, 'doubled, see line ', $seen{$english} if $seen{$english};
    $seen{$english} = $number;
    fault_at $place, 'a leftover, nothing shows it: ', one_line($english) unless $places->{$english};
    check_translation($place, $english, $translation);
  }
  fault_at $path, 'missing, shown in ', $places->{$_}[0], ': ', one_line($_)
    for grep { !$seen{$_} } sort keys %$places;
  return $name;
}

sub phrase_files { return sort glob "$root/resources/languages/*.Phrases" }

sub check {
  my @paths = @_;
  if (!@paths) {
    @paths = phrase_files();
    for my $language (@languages) {
      fault "resources/languages/$language.Phrases: missing" unless grep { basename($_) eq "$language.Phrases" } @paths;
    }
  }
  my $places = collect();
  my %file_of;
  for my $path (@paths) {
    my $name = check_file($places, $path) // next;
    fault_at "$path:1", "the language's name is that of ", $file_of{$name} if $file_of{$name};
    $file_of{$name} = $path;
  }
  printf "%d phrases, %d phrase files, %d faults\n", scalar keys %$places, scalar @paths, scalar @faults;
}

# ---- output ----

# Phrases by the file that they stand in first, each once.
sub print_phrase_file {
  my ($name, $translate) = @_;
  my $places = collect();
  my %of_file;
  for my $phrase (keys %$places) {
    my ($file, $line) = $places->{$phrase}[0] =~ /^(.*):(\d+)$/;
    push @{$of_file{$file}}, [$line, $phrase];
  }
  print "$name\n";
  for my $file (sort keys %of_file) {
    print "\n; $file\n";
    for my $entry (sort { $a->[0] <=> $b->[0] || $a->[1] cmp $b->[1] } @{$of_file{$file}}) {
      printf qq("%s" = "%s"\n), map { one_line($_) } $entry->[1], $translate->($entry->[1]);
    }
  }
}

# Half as long again: behind several words further ones, behind a single one nothing that it could be broken at.
sub lengthened {
  my ($line) = @_;
  my $missing = int((1 + length $line =~ s/$directive//gr) / 2);
  my $filler = substr 'åéîøü ßœžšÿ âôñ ûýæçðþ ' x (1 + $missing / 20), 0, $missing;
  $filler =~ s/ /õ/g if $line !~ /\S\s+\S/;
  $filler =~ s/\s$/ž/;
  $filler =~ s/^(.)/ $1/ if $line =~ /\S\s+\S/;
  return $line =~ s/([\s.:!?]*)$/$filler$1/r;
}

sub accented {
  my ($text) = @_;
  my @lines = map { /\p{L}/ ? lengthened($_) : $_ } split /\n/, $text, -1;
  my $accents = sub { $_[0] =~ tr/aeiouyncAEIOUYNC/âéíöüÿñçÅÈÎÔÛÝÑÇ/r };
  my ($accented, $rest) = ('', join "\n", @lines);
  while ($rest =~ /\G(.*?)($directive|\z)/gs) {
    $accented .= $accents->($1) . $2;
    last if $2 eq '';
  }
  return $accented;
}

sub install {
  my ($directory, @paths) = @_;
  @paths = phrase_files() unless @paths;
  make_path($directory);
  for my $path (@paths) {
    my $text = read_text($path) =~ s/\r?\n/\r\n/gr;
    my $bytes = eval { encode('cp1252', $text, Encode::FB_CROAK) } // die "$path: outside Windows-1252: $@";
    write_bytes("$directory/" . basename($path), $bytes);
  }
}

sub print_catalogue {
  my ($path) = @_;
  my $text = join '', map { one_line($_) . "\n" } sort keys %{collect()};
  defined $path ? write_bytes($path, encode('UTF-8', $text)) : print $text;
}

binmode $_, ':encoding(UTF-8)' for *STDOUT, *STDERR;
my ($command, @arguments) = @ARGV;
my %commands = (
  collect         => \&print_catalogue,
  check           => \&check,
  template        => sub { print_phrase_file('Language', sub { $_[0] }) },
  'test-language' => sub { print_phrase_file('Accented', \&accented) },
  install         => \&install,
);
die $usage unless $commands{$command // ''};
$commands{$command}->(@arguments);
print STDERR "$_\n" for @faults;
# A catalogue with a fault is still one; the check tells of it.
exit(@faults && $command ne "collect" ? 1 : 0);
