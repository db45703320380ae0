#!/usr/bin/perl -w
use strict;
use warnings;
package Town::Index;

=head1 NAME

Index - it's a list of "names"

=cut

our ($VERSION, @names, %ages) = ('1.02', qw(anna ben "carl"), 10);
my $limit = 1_000_000; my $mask = 0xFF; my $small = 1.5e-3;
my $last = $#names; # the last index
my $count = @{$self->{list}} / 2; my $part = $s/2 + $y/3;

sub new {
    my ($class, %args) = @_;
    my $self = { name => "the \"first\"\t$args{name}\n", note => 'it\'s $not replaced' };
    return bless $self, ref($class) || $class;
}

sub find {
    my $self = shift;
    my $text = "a text over
    two lines with @{[ 1 + 2 ]} and \$this";
    while (my $line = <STDIN>) {
        chomp $line;
        next unless $line =~ /^\s*(\w+)\s*=\s*"(.*)\/"$/;
        my ($key, $value) = ($1, $2);
        $value =~ s/'/\\'/g;
        $value =~ s{<b>(.{1,3})</b>}{*$1*}gi;
        (my $copy = $key) =~ tr/a-z/A-Z/;
        if ($key eq 'end' and $value ne q(it's)) { last; }
        elsif ($key !~ m/^#/ || $value lt "m") { push @names, $key; }
        print STDERR "seen: $key\n" if /debug/;
    }
    my @sorted = sort { $a <=> $b or $a cmp $b } grep { /x/ } keys %ages;
    my @parts = split /,\s*/, join(':', map { $_ ** 2 } @sorted);
    my $re = qr/(["'])(.*?)\1/x;
    die "cannot read: $!" unless open(my $in, '<', $self->{path});
    local $/ = undef; local $" = ', ';
    print <<EOF;
Dear reader, it's "the end" of $text
EOF
    print qq{say "hello" to $self->{name}}, q[it's];
    return wantarray ? @parts : scalar(@parts) x 3;
}

foreach my $i (0 .. 10) { printf("%d\n", $i % 3) unless $i == 5; }
my %table = (s => 1, 'y' => 2);
unlink glob("*.tmp") or warn "nothing";
print "never closed
my $hidden = 1;
__END__
print 'not seen';
