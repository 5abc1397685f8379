#!/usr/bin/env perl
# help.pl SOURCE WORK OUTPUT.CHM: compiles the chapters of SOURCE (*.md) to a help file; WORK is a folder for what is
# made on the way. index.md is the start page; what it links, in that order, are the other chapters. Contents and index
# come from the headings, and the index besides from the tables whose first column is one of %index_columns. A link or a
# picture that is not there, or a chapter that nothing links, is a fault, and then no file is made.
use strict;
use warnings;
use Cwd qw(abs_path);
use Encode qw(encode decode);
use File::Basename qw(basename dirname);
use File::Copy qw(copy);
use File::Path qw(make_path remove_tree);
use POSIX qw(setlocale LC_ALL);

my ($source, $work, $output) = @ARGV;
die "usage: help.pl SOURCE WORK OUTPUT.CHM\n" unless defined $output;
my %index_columns = map { $_ => 1 } qw(box button item line message operation option);
my $title = 'ZYR TWAIN Help';

my @faults;
sub fault { push @faults, join '', @_ }

sub read_text {
  my ($path) = @_;
  open my $in, '<:encoding(UTF-8)', $path or die "$path: $!\n";
  local $/;
  return scalar <$in>;
}

sub write_bytes {
  my ($name, $bytes) = @_;
  open my $out, '>:raw', "$work/$name" or die "$work/$name: $!\n";
  print $out $bytes;
  close $out or die "$work/$name: $!\n";
}

# What an old parser reads in whatever code page it thinks it is in.
sub ascii { return $_[0] =~ s/([^\x00-\x7E])/'&#' . ord($1) . ';'/ger }

my %entities = (amp => '&', lt => '<', gt => '>', quot => '"');
sub plain { # the words of a piece of HTML
  my $text = $_[0] =~ s/<[^>]*>//gr;
  return $text =~ s/&(\w+);/$entities{$1} \/\/ "&$1;"/ger =~ s/\s+/ /gr =~ s/^ | $//gr;
}

sub quoted { # as a parameter in the contents or the index, which know no Unicode
  my $text = $_[0] =~ s/&/&amp;/gr =~ s/"/&quot;/gr =~ s/</&lt;/gr =~ s/>/&gt;/gr;
  return encode('cp1252', $text);
}

# As code hosts name the anchors of headings, so that links hold there and here.
sub anchor {
  my ($text, $taken) = @_;
  my $name = lc(plain($text)) =~ s/[^\w\- ]//gr =~ s/ /-/gr;
  my $number = $taken->{$name}++;
  return $number ? "$name-$number" : $name;
}

sub html_of { # FILE
  open my $in, '-|', 'cmark-gfm', '--extension', 'table', '--to', 'html', $_[0] or die "cmark-gfm: $!\n";
  binmode $in, ':encoding(UTF-8)';
  local $/;
  my $html = <$in>;
  close $in or die "cmark-gfm failed with $_[0]\n";
  return $html;
}

# A chapter: its file, page, title, body, the anchors that it has, headings [level, text, anchor], and words for the
# index [text, anchor].
sub read_chapter {
  my ($name) = @_;
  my %chapter = (name => $name, page => $name =~ s/\.md$/.html/r, anchors => {}, headings => [], words => []);
  my $body = html_of("$source/$name");
  fault "$name: HTML in the text" if $body =~ /<!-- raw HTML omitted -->/;
  my %taken;
  $body =~ s{<h([1-6])>(.*?)</h\1>}{
    my ($level, $text) = ($1, $2);
    my $id = anchor($text, \%taken);
    $chapter{anchors}{$id} = 1;
    push @{$chapter{headings}}, [$level, plain($text), $id];
    qq(<h$level><a name="$id"></a>$text</h$level>)
  }gse;
  my $rows = 0;
  $body =~ s{<table>.*?</table>}{
    my $table = $&;
    my ($head) = $table =~ m{<th[^>]*>(.*?)</th>}s;
    $table =~ s{(<tr>\s*<td[^>]*>)(.*?)(</td>)}{
      my ($before, $cell, $after) = ($1, $2, $3);
      my $id = 'row-' . ++$rows;
      push @{$chapter{words}}, [plain($_), $id] for grep { /\S/ } split m{ / }, $cell;
      qq($before<a name="$id"></a>$cell$after)
    }gse if $index_columns{plain($head)};
    $table
  }gse;
  $chapter{body} = $body;
  my ($first) = grep { $_->[0] == 1 } @{$chapter{headings}};
  fault "$name: no heading of the first level" unless $first;
  $chapter{title} = $first ? $first->[1] : $name;
  return \%chapter;
}

sub linked_chapters { # of index.md, in its order
  my %seen = ('index.md' => 1);
  my @names = grep { !$seen{$_}++ } read_text("$source/index.md") =~ /\]\(([\w-]+\.md)(?:#[^)]*)?\)/g;
  for (map { basename $_ } glob "$source/*.md") { fault "$_: index.md does not link it" unless $seen{$_} }
  return ('index.md', grep { -e "$source/$_" or fault("index.md: no chapter $_"), 0 } @names);
}

# Links to chapters become links to pages, and everything that is linked is there.
sub finish {
  my ($chapter, $chapters, $pictures) = @_;
  my $name = $chapter->{name};
  $chapter->{body} =~ s{<a href="([^"]*)"}{
    my $target = $1;
    if ($target !~ /^(?:https?|mailto):/) {
      my ($file, $id) = split /#/, $target, 2;
      my $other = $file eq '' ? $chapter : $chapters->{$file};
      if (!$other) { fault "$name: link to $target, which is no chapter" }
      elsif (defined $id && !$other->{anchors}{$id}) { fault "$name: link to $target, which is no heading" }
      else { $target = ($file eq '' ? '' : $other->{page}) . (defined $id ? "#$id" : '') }
    }
    qq(<a href="$target")
  }gse;
  while ($chapter->{body} =~ /<img src="([^"]*)"/g) {
    if (-f "$source/$1") { $pictures->{$1} = 1 } else { fault "$name: no picture $1" }
  }
}

sub page {
  my ($chapter) = @_;
  my $head = $chapter->{title} =~ s/&/&amp;/gr =~ s/</&lt;/gr;
  return ascii(<<"HTML");
<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 4.01//EN" "http://www.w3.org/TR/html4/strict.dtd">
<html lang="en">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=windows-1252">
<meta http-equiv="X-UA-Compatible" content="IE=edge">
<title>$head</title>
<link rel="stylesheet" type="text/css" href="help.css">
</head>
<body>
$chapter->{body}</body>
</html>
HTML
}

sub entry {
  my ($text, $target) = @_;
  my ($name, $local) = (quoted($text), quoted($target));
  my $parameters = qq(<param name="Name" value="$name"><param name="Local" value="$local">);
  return qq(<LI><OBJECT type="text/sitemap">$parameters</OBJECT>\n);
}

sub sitemap {
  my $type = '<!DOCTYPE HTML PUBLIC "-//IETF//DTD HTML//EN">';
  return "$type\n<HTML><HEAD></HEAD><BODY>\n<UL>\n$_[0]</UL>\n</BODY></HTML>\n";
}

sub contents {
  my $list = '';
  for my $chapter (@_) {
    $list .= entry($chapter->{title}, $chapter->{page});
    my $depth = 1;
    for my $heading (@{$chapter->{headings}}) {
      my ($level, $text, $id) = @$heading;
      next if $level < 2 || $level > 3;
      for (; $depth < $level; ++$depth) { $list .= "<UL>\n" }
      for (; $depth > $level; --$depth) { $list .= "</UL>\n" }
      $list .= entry($text, "$chapter->{page}#$id");
    }
    $list .= "</UL>\n" x ($depth - 1);
  }
  return sitemap($list);
}

# Alphabetical. Words that lead to several places name the chapter, too.
sub keywords {
  my %places;
  for my $chapter (@_) {
    my @words = (map([$_->[1], $_->[2]], grep { $_->[0] > 1 } @{$chapter->{headings}}), @{$chapter->{words}});
    $places{$_->[0]}{"$chapter->{page}#$_->[1]"} //= $chapter->{title} for @words;
  }
  my $list = '';
  for my $word (sort { lc $a cmp lc $b || $a cmp $b } keys %places) {
    my %targets = %{$places{$word}};
    my %of_chapter;
    ++$of_chapter{$_} for values %targets;
    for my $target (sort keys %targets) {
      next unless $of_chapter{$targets{$target}}; # the first place in a chapter will do
      $of_chapter{$targets{$target}} = 0;
      $list .= entry(keys %of_chapter > 1 ? "$word ($targets{$target})" : $word, $target);
    }
  }
  return sitemap($list);
}

sub project {
  my $files = join "\r\n", @_;
  return <<"HHP" =~ s/\r?\n/\r\n/gr;
[OPTIONS]
Compatibility=1.1 or later
Compiled file=ZYRTWAIN.CHM
Contents file=help.hhc
Index file=help.hhk
Default topic=index.html
Default Window=main
Title=$title
Language=0x409 English (United States)
Full-text search=Yes
Binary Index=No
Binary TOC=No

[WINDOWS]
main="$title","help.hhc","help.hhk","index.html","index.html",,,,,0x63520,260,0x304e,[60,40,1060,780],,,,,,,0

[FILES]
$files
HHP
}

# The compiler writes the time into two places, so that files of equal sources differ: the header, and entry 10 of the
# system file, which stands first there.
sub without_time {
  my ($path) = @_;
  open my $in, '<:raw', $path or die "$path: $!\n";
  my $bytes = do { local $/; <$in> };
  close $in;
  substr($bytes, 16, 4) = "\0\0\0\0";
  $bytes =~ s/(\x03\0\0\0\x0A\0\x04\0)..../$1\0\0\0\0/s;
  return $bytes;
}

setlocale(LC_ALL, 'C');
$source = abs_path($source);
remove_tree($work);
make_path("$work/pictures");
my @chapters = map { read_chapter($_) } linked_chapters();
my %chapters = map { $_->{name} => $_ } @chapters;
my %pictures;
finish($_, \%chapters, \%pictures) for @chapters;
if (@faults) {
  print STDERR "$_\n" for @faults;
  exit 1;
}
write_bytes($_->{page}, page($_)) for @chapters;
for my $file ('help.css', sort keys %pictures) { copy("$source/$file", "$work/$file") or die "$file: $!\n" }
write_bytes('help.hhc', contents(@chapters));
write_bytes('help.hhk', keywords(@chapters));
write_bytes('help.hhp', project(map({ $_->{page} } @chapters), 'help.css', map { s{/}{\\}gr } sort keys %pictures));
my $told = qx(cd '$work' && chmcmd help.hhp 2>&1);
die "chmcmd:\n$told" if $? != 0 || $told =~ /^(?:Warning|Error|Fatal)/m || !-s "$work/ZYRTWAIN.CHM";
write_bytes('finished.chm', without_time("$work/ZYRTWAIN.CHM"));
rename "$work/finished.chm", $output or die "$output: $!\n";
