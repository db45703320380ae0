<!DOCTYPE html>
<html lang="en">
<!-- don't look: <?php echo "here" ?> is code -->
<?php
declare(strict_types=1);

namespace Town\Pages;

use Town\{Page, Reader as Person};

/** A page. 'Quotes' and "texts" are comment. */
#[Route("/page", name: 'page')]
final class Show extends Page implements \Countable
{
    use Named;
    const LIMIT = 1_000_000, MASK = 0xFF, SMALL = 1.5e-3;
    private ?string $title = null; // not set
    protected static int $count = 0; # so far

    public function __construct(private readonly array $list = [], Person|int|false $person = null)
    {
        parent::__construct();
        $this->title = "Page \"one\"\t{$this->name} of $count, \u{e4} \$5";
        self::$count++;
        $note = 'it\'s $not replaced \n';
        $long = "over
        lines";
    }

    public function count(): int
    {
        $class = 1; $list = 2; $function = $class / $list;
        foreach ($this->list as $key => &$value) {
            if ($value === null || !isset($value['x']) && $key <> 5) continue;
            elseif ($value instanceof Reader) break;
            else unset($this->list[$key]);
        }
        return match (true) {
            $this->title === 'x', is_array($value) => count($this->list),
            default => throw new \RuntimeException("nothing"),
        };
    }

    public function text(): string
    {
        $name = $_GET['name'] ?? htmlspecialchars(trim($_POST["name"]));
        $add = fn(int $x): int => $x <=> 2 ** 3;
        return <<<EOT
            Dear $name, it's "here": {$this->title}
            EOT . PHP_EOL;
    }
}
$show = new Show(TRUE); # made ?>
<body class="<?= $show->title ?>" id='x'>
  <h1>It's the title & more</h1> <!-- it's "hidden" -->
  <?php if ($show): ?>
    <p title="a &quot;b&quot;">text of the page, if any</p>
  <?php endif; // done ?>
  <br/>
</body>
<?php
echo "never closed
$hidden = 1;
