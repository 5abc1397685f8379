#!/usr/bin/env perl
# check-help.pl: holds docs/user-guide against the texts of the module as phrases.pl collects them. Every text that the
# user is to read must stand in a chapter; what need not is told below. Prints what is missing, and exits with 1 then.
use strict;
use warnings;
use File::Basename qw(dirname);

my $scripts = dirname(__FILE__);

# Sources whose texts are for programs, programmers and technical support.
my @unread = map { qr{^$_} } qw(foundation/log/ foundation/xml/ foundation/support/(?:file_|files|registry|shell)
  imaging/ twain/capabilities/ twain/names\.cpp acquire/image_dialog/image_operations\.cpp);

# Texts that explain themselves: tool tips and heads.
my $self_explaining = qr{
  ^(?:Click\ on\ this\ option|This\ option\ permits|These\ options\ permit|Sets\ the\ number|Displays\ the
    |Manually\ trig|You\ will\ be\ prompted|The\ following\ sensor|Enables\ you|Exists|Reduces|Increases|Magnifies
    |Expands|Localized|Copies|Flips?\ the|Rotates?\ the|Inverts|Manually\ adjusts|Automatically|Equalizes|Normalizes
    |Smooths|Sharpens|Enhances|Quickly|Removes|Undoes|Redoes|Reverts|Contains|Various|Undo,|Hides|Shows|Creates
    |NOTE:|These\ TWAIN)
  |\ options\ and\ preferences\.$}x;

# Written to the log only, or a row of the guide for all of the kind.
my $told_otherwise = qr{^(?:(?:Flushing\ sensor|Device\ inserted|Waiting\ for\ sensor|Unknown\ status)$
  |General\ failure\ in\ response\ to|TWAIN\ source\ does\ not\ support)}x;

# The guide has examples of these; of the last, no group of the options holds the page.
my %example = ('Items %lu through %lu of %lu' => 1, 'Item %lu of %lu' => 1, 'Single Or Continuous Capture Mode' => 1);

# What each text comes down to, here and there: no marks, and three points for what is put in.
sub essence {
  my ($text) = @_;
  $text =~ s/\\n|\s+/ /g;
  $text =~ s/%%/%/g;
  $text =~ s/%[-.\d]*(?:l?[usdfxX]+|08lX)/.../g;
  $text =~ s/[&*\\]|<[^>]*>//g;
  $text =~ s/\s+/ /g;
  $text =~ s/^ | $//g;
  return lc $text;
}

my $known = '';
for my $path (glob "$scripts/../docs/user-guide/*.md") {
  open my $in, '<:encoding(UTF-8)', $path or die "$path: $!\n";
  local $/;
  $known .= ' ' . essence(<$in>);
}

binmode STDOUT, ':encoding(UTF-8)';
open my $in, '-|', $^X, "$scripts/phrases.pl", 'template' or die "phrases.pl: $!\n";
binmode $in, ':encoding(UTF-8)';
my ($file, $count, $missing) = ('', 0, 0);
while (my $line = <$in>) {
  $file = $1 if $line =~ /^; (\S+)$/;
  next unless $line =~ /^"(.*)" = "/;
  my $text = $1;
  next if $text =~ $self_explaining || $text =~ $told_otherwise || $example{$text} || grep { $file =~ $_ } @unread;
  ++$count;
  # The second half of most reasons stands there once; what is put in at the ends may be told in words.
  my $wanted = essence($text) =~ s/^[. ]*\.{3}[. ]*|[ (]*\.{3}[ )]*$|:$//gr;
  $wanted =~ s/ please check the (?:hardware )?connection .*then retry the operation\.$//;
  next if index($known, $wanted) >= 0;
  ++$missing;
  print "$file: not in the user guide: $text\n";
}
close $in or die "phrases.pl template failed\n";
die "phrases.pl has found no texts\n" unless $count;
print "$count texts, $missing missing in the user guide\n";
exit($missing ? 1 : 0);
