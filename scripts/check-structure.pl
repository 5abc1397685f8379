#!/usr/bin/env perl
# check-structure.pl ROOT KNOWN-SOURCES: holds the tree against the rules of its layout and says what is wrong, a line
# each. KNOWN-SOURCES is the list that CMake writes of every source file that a target takes, on whatever build.
use strict;
use warnings;
use File::Find;

my ($root, $known_sources) = @ARGV;
die "usage: check-structure.pl ROOT KNOWN-SOURCES\n" unless defined $known_sources;

# What a folder may include besides itself. The longest matching prefix decides.
my @platform   = qw(platform resources);
my @foundation = (@platform, 'foundation');
my @settings   = (@foundation, 'settings');
my @imaging    = (@settings, 'imaging');
my @hardware   = (@imaging, 'hardware');
my @acquire    = (@hardware, 'acquire');
my @twain      = (@acquire, 'twain');
my %may_include = (
  resources        => [],
  platform         => [],
  'platform/win32' => ['platform'],
  'platform/host'  => ['platform'],
  foundation       => \@platform,
  settings         => \@foundation,
  imaging          => \@settings,
  hardware         => \@imaging,
  acquire          => \@hardware,
  twain            => \@acquire,
  module           => [@twain, 'controls'],
  controls         => \@imaging,
  simulator        => ['platform'],
  'simulator/tool' => undef,
  tools            => undef,    # anything
  tests            => undef,
  bench            => undef,
);
# Views may use the controls, which the portable code beside them may not.
my $view_of_upper_floor = qr{^(?:acquire|twain)/(?:.*/)?win32/};

my $windows_room   = qr{^(?:platform/win32|controls|simulator/driver)/|/win32/};
my $windows_header = qr{^(?:windows|windowsx|winsock2?|ws2tcpip|winuser|wingdi|commctrl|commdlg|shlobj|shellapi|mmsystem)\.h$}i;
my $windows_macro  = qr{\b(?:_WIN32|_WIN64|WIN32|__MINGW32__|__MINGW64__)\b};

my @faults;
sub fault { push @faults, join '', @_ }

sub top_folder { return $_[0] =~ m{^([^/]+)/} ? $1 : '' }

sub rules_of {
  my ($file) = @_;
  my ($best) = sort { length $b <=> length $a } grep { index($file, "$_/") == 0 } keys %may_include;
  return $best;
}

sub allowed {
  my ($file, $included) = @_;
  my $folder = rules_of($file);
  my $rules  = $may_include{$folder};
  return 1 unless defined $rules;
  my $target = rules_of($included) // top_folder($included);
  return 1 if $target eq $folder || grep { $_ eq $target } @$rules;
  return $target eq 'controls' && $file =~ $view_of_upper_floor;
}

sub files_below_root {
  my @files;
  find({
      no_chdir => 1,
      wanted   => sub {
        my $name = $File::Find::name =~ s{^\Q$root\E/?}{}r;
        if (-d && $name =~ m{^(?:build|out|\.[^/]*)$}) { $File::Find::prune = 1; return }
        push @files, $name if -f && $name =~ /\.(?:h|hpp|c|cc|cpp|rc)$/;
      },
  }, $root);
  return sort @files;
}

my (%includes, %exists);
my @files = files_below_root();
$exists{$_} = 1 for @files;

for my $file (@files) {
  if (!defined rules_of($file)) {
    fault "$file: the folder '", top_folder($file), "' has no place among the floors";
    next;
  }
  open my $in, '<', "$root/$file" or die "$root/$file: $!\n";
  while (my $line = <$in>) {
    next unless $line =~ /^\s*#\s*(\w+)\s*(.*)/;
    my ($directive, $rest) = ($1, $2);
    if ($directive eq 'include' && $rest =~ /^<([^>]+)>/) {
      my $header = $1;
      fault "$file:$.: <$header> stands outside the rooms of Windows code"
        if $header =~ $windows_header && $file !~ $windows_room && $file !~ /\.rc$/;
    } elsif ($directive eq 'include' && $rest =~ /^"([^"]+)"/) {
      my $included = $1;
      if (!-e "$root/$included") {
        fault "$file:$.: \"$included\" is no path from the root of the repository";
      } else {
        push @{$includes{$file}}, $included;
        fault "$file:$.: may not include \"$included\": ", rules_of($file), " stands below or apart from ",
          rules_of($included) // top_folder($included)
          unless allowed($file, $included);
      }
    } elsif ($rest =~ /($windows_macro)/ && $file !~ $windows_room) {
      fault "$file:$.: $1 is asked outside the rooms of Windows code";
    }
  }
  close $in;
}

# Circles of headers, each told once, from its first file by name.
my (%state, %told);
sub visit {
  my ($file, @path) = @_;
  if (($state{$file} // '') eq 'open') {
    my @circle = @path;
    shift @circle while $circle[0] ne $file;
    my $key = join ' ', sort @circle;
    fault 'circle: ', join(' -> ', @circle, $file) unless $told{$key}++;
    return;
  }
  return if $state{$file};
  $state{$file} = 'open';
  visit($_, @path, $file) for @{$includes{$file} // []};
  $state{$file} = 'done';
}
visit($_) for @files;

open my $known, '<', $known_sources or die "$known_sources: $!\n";
chomp(my @known = <$known>);
close $known;
my %known = map { $_ => 1 } @known;
for my $file (grep { /\.(?:c|cc|cpp|rc)$/ } @files) {
  fault "$file: no target builds it" unless $known{$file};
}

print "$_\n" for @faults;
printf "%d files, %d faults\n", scalar @files, scalar @faults;
exit(@faults ? 1 : 0);
