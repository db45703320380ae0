library mail;

import 'dart:async' show Future, Stream;
import 'package:post/post.dart' as post hide Letter;
part 'mail.g.dart';

/// A letter. /* nested
/* A comment /* with another */ goes on */
@immutable
abstract class Letter<T extends Object> implements Comparable<Letter> {
  const Letter(this.sender, {required this.weight, this.text = 'none'});
  factory Letter.empty() = EmptyLetter;
  final String sender;
  final double weight;
  late final String? text;
  static const int limit = 0xFF, million = 1000000;
  static const small = 1.5e-3;

  @override
  int compareTo(Letter other) => weight.compareTo(other.weight);

  @Deprecated('use send') void post({int count = 1}) {}

  String get label => 'from $sender: ${weight > 20 ? "heavy ${weight.round()}" : 'light'} \$5';
  set note(String value) => _note = "it's \"quoted\"\t\u00e4\x41";

  bool operator ==(Object other) => identical(this, other) || other is Letter && other.sender == sender;
}

const raw = r'C:\new\$sender', rawToo = r"\n";
const long = '''
A "text" over lines with $sender and ${list.map((e) => '${e}!').join(', ')}
it's fine \''' here
''';
const longer = """a 'text' with ${1 + 2} in it""";
const rawLong = r'''no ${escapes}
here''';

mixin Stamped on Letter {
  var stamps = <String, int>{'blue': 1, 'red': 2};
}

enum Size { small, large; Size get other => this == small ? large : small; }

Future<void> send(Letter letter, [int times = 1]) async {
  try {
    await for (final part in letter.parts()) {
      if (part case [var first, _] when first != null) print(first);
    }
    for (var i = 0; i < times; i++) yield i;
  } on FormatException catch (error, stack) {
    rethrow;
  } finally {
    switch (letter) {
      case EmptyLetter(): break;
      default: throw StateError('unknown ${letter}');
    }
  }
  dynamic map = {for (var e in stamps.entries) e.key: {e.value}};
  var open = 'not closed
  var next = "neither
  assert(true && !false, 'ok'); // checked
}
const never = '''not closed
var hidden = 1;
